#pragma once

/// The elements that paths are made of.

#include "CoreGraphics/CGGeometry.h"

#include <array>
#include <vector>

struct CGPathElement {
    enum Kind { MoveTo, LineTo, QuadCurveTo, CurveTo, Close } kind;
    std::array<CGPoint, 3> points{}; ///< as many as the kind has: controls first, then the end
};
using CGPathElements = std::vector<CGPathElement>;
