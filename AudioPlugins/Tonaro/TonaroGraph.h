#pragma once

/// Curves that are drawn with every change of a value: a column of pixels for each point, without the geometry of a
/// stroke, which would take twenty times as long.

#include "AppKit/NSAppearance.h"
#include "CoreGraphics/CGContext.h"

#include <vector>

/// Draws a curve `width` points wide, with soft edges above and below.
///
/// @param heights  y of the curve at the edges of neighbouring columns, one pixel apart, from `area`'s left side on
/// @param area     nothing is drawn above and below it
void TonaroDrawGraph(CGContextRef context, const std::vector<CGPoint>& heights, CGRect area, CGFloat width,
                     NSAppearanceColorName color);
