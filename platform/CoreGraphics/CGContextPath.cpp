// The current path: elements in device space, handed to Cairo when they are drawn.

#include "CoreGraphics/CGCairo.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

/// Farther out than any bitmap, and near enough for Cairo's fixed-point arithmetic, differences included.
constexpr CGFloat kFarthest = 1 << 21;

CGPoint transformed(const CGAffineTransform& t, CGPoint p)
{
    return {t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}

bool isFinite(CGPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

CGPoint withinReach(CGPoint p)
{
    return {std::clamp(p.x, -kFarthest, kFarthest), std::clamp(p.y, -kFarthest, kFarthest)};
}

/// Adds elements of user space to a list in device space.
class PathBuilder {
public:
    PathBuilder(CGPathElements& elements, const CGAffineTransform& ctm) : mElements(elements), mCtm(ctm) {}

    void moveTo(CGPoint p) { add(CGPathElement::MoveTo, {p}, 1); }
    void lineTo(CGPoint p) { add(mElements.empty() ? CGPathElement::MoveTo : CGPathElement::LineTo, {p}, 1); }
    void curveTo(CGPoint control1, CGPoint control2, CGPoint end)
    {
        if (mElements.empty()) lineTo(control1);
        add(CGPathElement::CurveTo, {control1, control2, end}, 3);
    }
    void quadCurveTo(CGPoint control, CGPoint end)
    {
        if (mElements.empty()) lineTo(control);
        add(CGPathElement::QuadCurveTo, {control, end}, 2);
    }
    void segment(CGPoint from, CGPoint to)
    {
        const std::size_t before = mElements.size();
        moveTo(from);
        lineTo(to);
        if (mElements.size() != before + 2) mElements.resize(before); // half a line would join its neighbour
    }
    void close()
    {
        if (!mElements.empty()) mElements.push_back({CGPathElement::Close});
    }
    void rect(CGRect r);
    void arc(CGPoint center, CGSize radii, CGFloat start, CGFloat sweep);
    void roundedRect(CGRect r, CGSize radii);

private:
    void add(CGPathElement::Kind kind, const std::array<CGPoint, 3>& points, std::size_t count)
    {
        CGPathElement element{kind};
        for (std::size_t i = 0; i < count; ++i) {
            element.points[i] = transformed(mCtm, points[i]);
            if (!isFinite(element.points[i])) return;
            element.points[i] = withinReach(element.points[i]);
        }
        mElements.push_back(element);
    }

    CGPathElements& mElements;
    const CGAffineTransform& mCtm;
};

void PathBuilder::rect(CGRect r)
{
    if (!CGIsFinite(r)) return;
    moveTo(r.origin);
    lineTo({CGRectGetMaxX(r), r.origin.y});
    lineTo({CGRectGetMaxX(r), CGRectGetMaxY(r)});
    lineTo({r.origin.x, CGRectGetMaxY(r)});
    close();
}

/// Pieces of a quarter turn at most: their curves stray from the circle by less than 3 parts in 10000 of the radius.
void PathBuilder::arc(CGPoint center, CGSize radii, CGFloat start, CGFloat sweep)
{
    const int pieces = std::max(1, static_cast<int>(std::ceil(sweep / (std::numbers::pi / 2) - 1e-9)));
    const CGFloat step = sweep / pieces;
    const CGFloat k = 4.0 / 3.0 * std::tan(step / 4);
    auto at = [&](CGFloat cosine, CGFloat sine) {
        return CGPoint{center.x + radii.width * cosine, center.y + radii.height * sine};
    };
    lineTo(at(std::cos(start), std::sin(start)));
    for (int i = 0; i < pieces; ++i) {
        const CGFloat c0 = std::cos(start + i * step), s0 = std::sin(start + i * step);
        const CGFloat c1 = std::cos(start + (i + 1) * step), s1 = std::sin(start + (i + 1) * step);
        curveTo(at(c0 - k * s0, s0 + k * c0), at(c1 + k * s1, s1 - k * c1), at(c1, s1));
    }
}

void PathBuilder::roundedRect(CGRect r, CGSize radii)
{
    constexpr CGFloat kReach = 1 - 0.55228474983079339; // of the controls of a quarter turn, from the corner
    const CGFloat minX = CGRectGetMinX(r), maxX = CGRectGetMaxX(r), minY = CGRectGetMinY(r), maxY = CGRectGetMaxY(r);
    const CGFloat left = minX + radii.width, right = maxX - radii.width;
    const CGFloat top = minY + radii.height, bottom = maxY - radii.height;
    const CGFloat dx = kReach * radii.width, dy = kReach * radii.height;
    if (mElements.empty()) mElements.reserve(10);
    moveTo({left, minY});
    lineTo({right, minY});
    curveTo({maxX - dx, minY}, {maxX, minY + dy}, {maxX, top});
    lineTo({maxX, bottom});
    curveTo({maxX, maxY - dy}, {maxX - dx, maxY}, {right, maxY});
    lineTo({left, maxY});
    curveTo({minX + dx, maxY}, {minX, maxY - dy}, {minX, bottom});
    lineTo({minX, top});
    curveTo({minX, minY + dy}, {minX + dx, minY}, {left, minY});
    close();
}

/// Cairo has cubic curves only: the same curve has its controls two thirds of the way to the one control.
void quadCurveTo(cairo_t* cairo, CGPoint control, CGPoint end)
{
    CGPoint start;
    cairo_get_current_point(cairo, &start.x, &start.y);
    auto toward = [&](CGPoint from) {
        return CGPoint{from.x + 2 * (control.x - from.x) / 3, from.y + 2 * (control.y - from.y) / 3};
    };
    const CGPoint first = toward(start), second = toward(end);
    cairo_curve_to(cairo, first.x, first.y, second.x, second.y, end.x, end.y);
}

PathBuilder pathOf(CGContextRef context) { return {context->state().path, context->state().current.ctm}; }

/// How far an arc goes, once around at most; an end before its start is taken one turn later.
CGFloat sweepBetween(CGFloat start, CGFloat end)
{
    constexpr CGFloat kTurn = 2 * std::numbers::pi;
    if (end >= start) return std::min(end - start, kTurn);
    return std::fmod(end - start, kTurn) + kTurn;
}

} // namespace

bool CGIsFinite(CGRect r) { return isFinite(r.origin) && isFinite({CGRectGetMaxX(r), CGRectGetMaxY(r)}); }

CGPathElements CGElementsOfRects(const CGAffineTransform& ctm, std::span<const CGRect> rects)
{
    CGPathElements elements;
    elements.reserve(5 * rects.size());
    for (const CGRect& rect : rects) PathBuilder(elements, ctm).rect(rect);
    return elements;
}

CGPathElements CGElementsOfRect(const CGAffineTransform& ctm, CGRect rect)
{
    return CGElementsOfRects(ctm, {&rect, 1});
}

CGPathElements CGElementsOfSegments(const CGAffineTransform& ctm, std::span<const CGPoint> points)
{
    CGPathElements elements;
    for (std::size_t i = 0; i + 1 < points.size(); i += 2) PathBuilder(elements, ctm).segment(points[i], points[i + 1]);
    return elements;
}

void CGReplay(cairo_t* cairo, const CGPathElements& elements)
{
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    cairo_identity_matrix(cairo);
    cairo_new_path(cairo);
    for (const CGPathElement& element : elements) {
        const auto& p = element.points;
        switch (element.kind) {
        case CGPathElement::MoveTo:
            cairo_move_to(cairo, p[0].x, p[0].y);
            break;
        case CGPathElement::LineTo:
            cairo_line_to(cairo, p[0].x, p[0].y);
            break;
        case CGPathElement::QuadCurveTo:
            quadCurveTo(cairo, p[0], p[1]);
            break;
        case CGPathElement::CurveTo:
            cairo_curve_to(cairo, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
            break;
        case CGPathElement::Close:
            cairo_close_path(cairo);
            break;
        }
    }
    cairo_set_matrix(cairo, &matrix);
}

void CGContextBeginPath(CGContextRef context)
{
    if (context) context->state().path.clear();
}

void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (context) pathOf(context).moveTo({x, y});
}

void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (context) pathOf(context).lineTo({x, y});
}

void CGContextAddCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat x,
                              CGFloat y)
{
    if (context) pathOf(context).curveTo({x1, y1}, {x2, y2}, {x, y});
}

void CGContextAddQuadCurveToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x, CGFloat y)
{
    if (context) pathOf(context).quadCurveTo({x1, y1}, {x, y});
}

CGPathElements CGContextCopyPath(CGContextRef context) { return context ? context->state().path : CGPathElements(); }

void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle)
{
    if (!context || !(radius >= 0) || !std::isfinite(startAngle) || !std::isfinite(endAngle)) return;
    pathOf(context).arc({x, y}, {radius, radius}, startAngle, sweepBetween(startAngle, endAngle));
}

void CGContextAddRect(CGContextRef context, CGRect rect)
{
    if (context) pathOf(context).rect(rect);
}

void CGContextAddEllipseInRect(CGContextRef context, CGRect rect)
{
    if (!context || !CGIsFinite(rect)) return;
    const CGRect r = CGRectStandardize(rect);
    pathOf(context).roundedRect(r, {r.size.width / 2, r.size.height / 2});
}

void CGContextAddRoundedRect(CGContextRef context, CGRect rect, CGFloat radius)
{
    if (!context || !CGIsFinite(rect)) return;
    const CGRect r = CGRectStandardize(rect);
    const CGFloat most = std::min(r.size.width, r.size.height) / 2;
    const CGFloat corner = radius > 0 ? std::min(radius, most) : 0;
    if (corner > 0)
        pathOf(context).roundedRect(r, {corner, corner});
    else
        pathOf(context).rect(r);
}

void CGContextClosePath(CGContextRef context)
{
    if (context) pathOf(context).close();
}
