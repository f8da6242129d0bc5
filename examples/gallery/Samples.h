#pragma once

/// What the fields are drawn with: pictures and texts of the gallery's bundle, and colours.
///
/// Failure: a picture that is missing is a std::runtime_error that names it.

#include "ZeGuiDefs.h"
#include "ZeResources.h"
#include "ZeUIBitmap.h"
#include "ZeUIGraphicsContext.h"

struct Samples {
    Samples();

    ZeResources resources;
    ZeBitmap* picture; ///< 96 by 64, a landscape with round corners
    ZeBitmap* strip;   ///< 128 by 32: four cells
};

/// 0xRRGGBB, opaque or less so, as a colour word.
constexpr ZeGuiDefs::Color colorOf(unsigned rgb, unsigned alpha = 0xFF)
{
    return alpha | ((rgb >> 16) & 0xFF) << 8 | ((rgb >> 8) & 0xFF) << 16 | (rgb & 0xFF) << 24;
}
constexpr ZeGuiDefs::Color kBlack = colorOf(0x202428), kGrey = colorOf(0x707880), kPale = colorOf(0xDCE8F4),
                           kWhite = colorOf(0xFFFFFF), kRed = colorOf(0xC83C28), kBlue = colorOf(0x2868C8),
                           kGreen = colorOf(0x288C50), kYellow = colorOf(0xF0C040);

/// Draws the whole image, a pixel as one unit.
void drawImage(ZeGraphicsContext& context, CGImageRef image, double x, double y);
/// A light square at each point.
void drawMarks(ZeGraphicsContext& context, std::span<const ZeFPoint> points);
