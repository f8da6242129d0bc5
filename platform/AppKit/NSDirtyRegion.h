#pragma once

/// What of a window must be drawn: a few rectangles in points that don't repeat each other.

#include "CoreGraphics/CGGeometry.h"

#include <vector>

class NSDirtyRegion {
public:
    /// Adds a rectangle. Rectangles are joined where the one around both costs little more than the two, and where
    /// there would be more than `kMost`.
    void add(CGRect rect);
    bool empty() const { return mRects.empty(); }
    const std::vector<CGRect>& rects() const { return mRects; }
    void clear() { mRects.clear(); }

    static constexpr std::size_t kMost = 8;

private:
    void joinCheapestPair();
    std::vector<CGRect> mRects;
};

/// The pixels, as device rectangle, that `points` touches at `scale` pixels a point.
CGRect NSPixelsAround(CGRect points, CGFloat scale);
