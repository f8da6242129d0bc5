#pragma once

// What drawing tests look at.

#include "CoreGraphics/Pixels.h"
#include "ZeUIGraphicsContext.h"

#include <ostream>

/// The pixels that have ink; right and bottom lie behind.
struct InkBox {
    std::size_t left = SIZE_MAX, top = SIZE_MAX, right = 0, bottom = 0;
    friend bool operator==(const InkBox&, const InkBox&) = default;
    friend std::ostream& operator<<(std::ostream& out, const InkBox& b)
    {
        return out << b.left << "," << b.top << " to " << b.right << "," << b.bottom;
    }
};

inline InkBox inkBoxOf(CGContextRef context)
{
    InkBox box;
    const auto pixels = CGBitmapContextGetPixels(context);
    const std::size_t width = CGBitmapContextGetWidth(context);
    for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
        if (pixels[4 * i + 3] == 0) continue;
        const std::size_t x = i % width, y = i / width;
        box.left = std::min(box.left, x), box.right = std::max(box.right, x + 1);
        box.top = std::min(box.top, y), box.bottom = std::max(box.bottom, y + 1);
    }
    return box;
}

/// A transparent context of its own, wrapped.
struct Canvas {
    Canvas(std::size_t width, std::size_t height) : bitmap(CGBitmapContextCreate(width, height)), drawing(bitmap) {}
    std::string pixel(std::size_t x, std::size_t y) const { return pixelOf(bitmap, x, y); }

    RetainPtr<CGContext> bitmap;
    ZeGraphicsContext drawing;
};

constexpr ZeGuiDefs::Color kBlack = 0x000000FF, kRed = 0x0000FFFF, kBlue = 0xFF0000FF, kWhite = 0xFFFFFFFF;
