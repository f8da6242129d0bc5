// Polygons and curves.

#include "ZeUIGraphicsContext.h"

#include <algorithm>

namespace {

enum { kQuadratic = 0, kCubic = 1, kStraight = 2 };

float SlopeBetween(ZeFPoint from, ZeFPoint to)
{
    const auto dx = static_cast<float>(to.x - from.x), dy = static_cast<float>(to.y - from.y);
    return dx == 0 ? 0 : dy / dx;
}

struct Controls {
    ZeFPoint first, second;
};

/// Those of the piece from points[i] on. A piece starts with the slope of the chord before it.
Controls ControlsOf(const ZeFPoint* points, unsigned int i, unsigned int n, float tension, int chordEnds)
{
    const ZeFPoint from = points[i], to = points[i + 1];
    const float own = SlopeBetween(from, to);
    const float start = i > 0 ? SlopeBetween(points[i - 1], from) : own;
    const float end = chordEnds != 1 && i + 2 < n ? SlopeBetween(to, points[i + 2]) : own;
    const auto step = static_cast<float>((to.x - from.x) / 3.0 * static_cast<double>(tension));
    return {{from.x + static_cast<double>(step), from.y + static_cast<double>(start * step)},
            {to.x - static_cast<double>(step), to.y - static_cast<double>(end * step)}};
}

unsigned int CountOf(int n) { return static_cast<unsigned int>(std::max(n, 0)); }

} // namespace

void ZeGraphicsContext::ZeDrawPath(ZeGuiDefs::Color color, const ZeFPoint* points, int n, double lineWidth, int, float,
                                   int)
{
    if (!points || n < 1) return;
    setStroke(color, lineWidth);
    CGContextBeginPath(context);
    CGContextMoveToPoint(context, points[0].x, points[0].y);
    for (int i = 0; i < n; ++i) CGContextAddLineToPoint(context, points[i].x, points[i].y);
    CGContextAddLineToPoint(context, points[0].x, points[0].y);
    CGContextStrokePath(context);
}

void ZeGraphicsContext::ZeFillPath(ZeGuiDefs::Color color, const ZeFPoint* points, int n, int mode, float tension,
                                   int chordEnds)
{
    setFill(color);
    CGContextSetLineWidth(context, 1.0);
    ZeCalcCurve(points, CountOf(n), mode, tension, chordEnds);
    CGContextFillPath(context);
}

void ZeGraphicsContext::ZeDrawCurve(ZeGuiDefs::Color color, const ZeFPoint* points, int n, int mode, float tension)
{
    setStroke(color, 1.0);
    CGContextSetShouldAntialias(context, false);
    ZeCalcCurve(points, CountOf(n), mode, tension, 0);
    CGContextStrokePath(context);
    CGContextSetShouldAntialias(context, true);
}

void ZeGraphicsContext::ZeCalcCurve(const ZeFPoint* points, unsigned int n, int mode, float tension, int chordEnds)
{
    if (!context || !points || n == 0) return;
    CGContextMoveToPoint(context, points[0].x, points[0].y);
    const bool straight = mode == kStraight || tension == 0;
    for (unsigned int i = 0; i + 1 < n; ++i) {
        const ZeFPoint end = points[i + 1];
        const auto [first, second] = ControlsOf(points, i, n, tension, chordEnds);
        if (straight)
            CGContextAddLineToPoint(context, end.x, end.y);
        else if (mode == kQuadratic)
            CGContextAddQuadCurveToPoint(context, (first.x + second.x) * 0.5, (first.y + second.y) * 0.5, end.x, end.y);
        else if (mode == kCubic)
            CGContextAddCurveToPoint(context, first.x, first.y, second.x, second.y, end.x, end.y);
    }
}
