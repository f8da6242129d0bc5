#pragma once

/// Points, sizes and rectangles in user space: y grows downward, (0, 0) is the top left.

#include <algorithm>
#include <cmath>
#include <limits>

using CGFloat = double;

struct CGPoint {
    CGFloat x = 0, y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
    CGFloat width = 0, height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
    friend bool operator==(const CGRect&, const CGRect&) = default;
};

inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) { return {{x, y}, {width, height}}; }
inline CGFloat CGRectGetMinX(CGRect r) { return r.origin.x; }
inline CGFloat CGRectGetMinY(CGRect r) { return r.origin.y; }
inline CGFloat CGRectGetMaxX(CGRect r) { return r.origin.x + r.size.width; }
inline CGFloat CGRectGetMaxY(CGRect r) { return r.origin.y + r.size.height; }
inline CGFloat CGRectGetMidX(CGRect r) { return r.origin.x + r.size.width / 2; }
inline CGFloat CGRectGetMidY(CGRect r) { return r.origin.y + r.size.height / 2; }
inline bool CGRectIsEmpty(CGRect r) { return !(r.size.width > 0 && r.size.height > 0); }
inline CGRect CGRectOffset(CGRect r, CGFloat dx, CGFloat dy) { return {{r.origin.x + dx, r.origin.y + dy}, r.size}; }
/// Moves each edge inward by dx or dy; negative values move it outward.
inline CGRect CGRectInset(CGRect r, CGFloat dx, CGFloat dy)
{
    return CGRectMake(r.origin.x + dx, r.origin.y + dy, r.size.width - 2 * dx, r.size.height - 2 * dy);
}
/// The square whose edges are `reach` away from its centre.
inline CGRect CGSquareAround(CGPoint center, CGFloat reach)
{
    return CGRectMake(center.x - reach, center.y - reach, 2 * reach, 2 * reach);
}
/// No rectangle at all.
inline constexpr CGRect CGRectNull{{std::numeric_limits<CGFloat>::infinity(), std::numeric_limits<CGFloat>::infinity()},
                                   {0, 0}};
inline bool CGRectIsNull(CGRect r) { return r.origin.x == CGRectNull.origin.x || r.origin.y == CGRectNull.origin.y; }
/// The same rectangle without a negative extent.
inline CGRect CGRectStandardize(CGRect r)
{
    return CGRectMake(std::min(r.origin.x, CGRectGetMaxX(r)), std::min(r.origin.y, CGRectGetMaxY(r)),
                      std::abs(r.size.width), std::abs(r.size.height));
}
/// What both rectangles cover, standardised; where they have no more than an edge or a corner in common, that, without
/// extent. CGRectNull where they are apart, or a number isn't one.
inline CGRect CGRectIntersection(CGRect first, CGRect second)
{
    const CGRect a = CGRectStandardize(first), b = CGRectStandardize(second);
    const bool meet = a.origin.x <= CGRectGetMaxX(b) && b.origin.x <= CGRectGetMaxX(a) &&
                      a.origin.y <= CGRectGetMaxY(b) && b.origin.y <= CGRectGetMaxY(a);
    const CGFloat x0 = std::max(a.origin.x, b.origin.x), y0 = std::max(a.origin.y, b.origin.y);
    const CGFloat x1 = std::min(CGRectGetMaxX(a), CGRectGetMaxX(b)), y1 = std::min(CGRectGetMaxY(a), CGRectGetMaxY(b));
    return meet && x1 - x0 >= 0 && y1 - y0 >= 0 ? CGRectMake(x0, y0, x1 - x0, y1 - y0) : CGRectNull;
}
inline bool CGRectIntersectsRect(CGRect a, CGRect b) { return !CGRectIsNull(CGRectIntersection(a, b)); }
/// The smallest rectangle around both; an empty one doesn't count.
inline CGRect CGRectUnion(CGRect a, CGRect b)
{
    if (CGRectIsEmpty(a)) return b;
    if (CGRectIsEmpty(b)) return a;
    const CGFloat x0 = std::min(a.origin.x, b.origin.x), y0 = std::min(a.origin.y, b.origin.y);
    const CGFloat x1 = std::max(CGRectGetMaxX(a), CGRectGetMaxX(b)), y1 = std::max(CGRectGetMaxY(a), CGRectGetMaxY(b));
    return CGRectMake(x0, y0, x1 - x0, y1 - y0);
}
/// Whether all of `inner` lies in `outer`, edges included.
inline bool CGRectContainsRect(CGRect outer, CGRect inner)
{
    return CGRectGetMinX(inner) >= CGRectGetMinX(outer) && CGRectGetMinY(inner) >= CGRectGetMinY(outer) &&
           CGRectGetMaxX(inner) <= CGRectGetMaxX(outer) && CGRectGetMaxY(inner) <= CGRectGetMaxY(outer);
}
/// Inside, the left and top edges included, the right and bottom edges not.
inline bool CGRectContainsPoint(CGRect r, CGPoint p)
{
    return p.x >= r.origin.x && p.x < CGRectGetMaxX(r) && p.y >= r.origin.y && p.y < CGRectGetMaxY(r);
}

using NSPoint = CGPoint;
using NSSize = CGSize;
using NSRect = CGRect;
