#pragma once

// What drawing tests look at.

#include "CoreGraphics/Pixels.h"
#include "ZeUIGraphicsContext.h"

/// A transparent context of its own, wrapped.
struct Canvas {
    Canvas(std::size_t width, std::size_t height) : bitmap(CGBitmapContextCreate(width, height)), drawing(bitmap) {}
    std::string pixel(std::size_t x, std::size_t y) const { return pixelOf(bitmap, x, y); }

    RetainPtr<CGContext> bitmap;
    ZeGraphicsContext drawing;
};

constexpr ZeGuiDefs::Color kBlack = 0x000000FF, kRed = 0x0000FFFF, kBlue = 0xFF0000FF, kWhite = 0xFFFFFFFF;
