#pragma once

/// A curve that is drawn again and again: how much of each pixel it covers, without the geometry of a stroke, which
/// would take twenty times as long.

#include "AppKit/NSAppearance.h"
#include "CoreGraphics/CGContext.h"

#include <cstdint>
#include <vector>

class TonaroGraph {
public:
    TonaroGraph() = default; ///< draws nothing
    /// A curve `width` points wide.
    ///
    /// @param ctm     of the contexts in which it will be drawn
    /// @param points  two at least, from left to right
    /// @param area    from its left to its right side, and nothing above and below it
    TonaroGraph(const CGAffineTransform& ctm, const std::vector<CGPoint>& points, CGRect area, CGFloat width);

    void draw(CGContextRef context, NSAppearanceColorName color) const;

private:
    /// Neighbouring columns, from the highest pixel that the curve touches there to the lowest.
    struct Strip {
        CGPoint origin; ///< pixels of the device
        std::size_t columns, rows;
        std::size_t bytesPerRow = (columns + 3) / 4 * 4;
        std::vector<std::uint8_t> coverage = std::vector<std::uint8_t>(bytesPerRow * rows);

        Strip(CGPoint at, std::size_t width, std::size_t height) : origin(at), columns(width), rows(height) {}
        void cover(std::size_t column, CGFloat top, CGFloat bottom, int weight);
    };
    std::vector<Strip> mStrips;
};
