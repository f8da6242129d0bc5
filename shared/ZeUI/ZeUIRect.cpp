#include "ZeUIRect.h"

#include "ZeTruncate.h"

#include <algorithm>
#include <cmath>

namespace {

/// Halves away from zero; the low 16 bits of what comes out.
std::int16_t RoundedTo16Bits(double value) { return static_cast<std::int16_t>(ZeTruncate(std::round(value))); }

/// The whole number toward zero, without the bits of `mask`.
double Aligned(double value, int mask)
{
    return static_cast<double>(ZeTruncate(value) & ~static_cast<long long>(mask));
}

bool HasNoExtent(const ZeRect& r) { return r.width == 0 || r.height == 0; }

ZeRect Around(const ZeRect& a, const ZeRect& b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x + a.width, b.x + b.width),
            std::max(a.y + a.height, b.y + b.height), ePt2Pt};
}

} // namespace

void ZeRect::Set(double a, double b, double c, double d, _tPt2Coord coord)
{
    if (coord != ePtSize && coord != ePt2Pt) return;
    x = a;
    y = b;
    width = coord == ePtSize ? c : c - a;
    height = coord == ePtSize ? d : d - b;
}

void ZeRect::Set(Rect r, _tPt2Coord coord)
{
    // Choice: with ePt2Pt what `GetRect` writes with ePtSize reads back. Test: ZeRect.ReadsPlatformRectangles
    if (coord == ePtSize) Set(r.left, r.top, r.right, r.bottom, ePt2Pt);
    if (coord == ePt2Pt) Set(r.left, r.top, r.right, r.bottom, ePtSize);
}

void ZeRect::Set(CGRect r, _tPt2Coord coord) { Set(r.origin.x, r.origin.y, r.size.width, r.size.height, coord); }

CGRect ZeRect::GetCGRect(_tPt2Coord coord) const
{
    if (coord == ePtSize) return CGRectMake(x, y, width, height);
    if (coord == ePt2Pt) return CGRectMake(x, y, x + width, y + height);
    return {};
}

Rect ZeRect::GetRect(_tPt2Coord coord) const
{
    if (coord != ePtSize && coord != ePt2Pt) return {};
    const CGRect r = GetCGRect(coord);
    return {.top = RoundedTo16Bits(r.origin.y),
            .left = RoundedTo16Bits(r.origin.x),
            .bottom = RoundedTo16Bits(r.size.height),
            .right = RoundedTo16Bits(r.size.width)};
}

void ZeRect::Inflate(double dx, double dy)
{
    x -= dx + 0.5;
    y -= dy + 0.5;
    width += 2 * dx + 0.5;
    height += 2 * dy + 0.5;
}

void ZeRect::Deflate(double dx, double dy)
{
    x += dx + 0.5;
    y += dy + 0.5;
    width -= 2 * dx + 0.5;
    height -= 2 * dy + 0.5;
}

void ZeRect::EdgeAdj(double d, _tEdge edge)
{
    switch (edge) {
    case eEdgeLeft:
        x += d;
        width -= d;
        break;
    case eEdgeRight:
        width += d;
        break;
    case eEdgeTop:
        y += d;
        height -= d;
        break;
    case eEdgeBottom:
        height += d;
        break;
    }
}

void ZeRect::Shift(double d, _tDirection direction)
{
    if (direction == eDirHorz || direction == eDirBoth) x += d;
    if (direction == eDirVert || direction == eDirBoth) y += d;
}

void ZeRect::Shift(double dx, double dy)
{
    x += dx;
    y += dy;
}

void ZeRect::CornerAdj(double d, _tCorner corner)
{
    if (corner < eCornerTL || corner > eCornerBR) return;
    if (corner == eCornerTL || corner == eCornerBL) x -= d;
    if (corner == eCornerTL || corner == eCornerTR) y -= d;
    width += d;
    height += d;
}

void ZeRect::AlignTL4Brush(int mask)
{
    const double left = Aligned(x, mask), top = Aligned(y, mask);
    width += x - left;
    height += y - top;
    x = left;
    y = top;
}

bool ZeRect::Intersects(const ZeRect& other, ZeRect* result) const
{
    const CGRect common = CGRectIntersection(GetCGRect(), other.GetCGRect());
    if (result) result->Set(common);
    return !CGRectIsNull(common);
}

bool ZeRect::SuperRect(const ZeRect& other, ZeRect* result) const
{
    ZeRect both = *this;
    if (!HasNoExtent(other)) both = HasNoExtent(*this) ? other : Around(*this, other);
    if (result) *result = both;
    return !HasNoExtent(both);
}

void ZeRect::TriPtsFromRect(ZeFPoint* points, int n, int kind) const
{
    enum { TL, TR, BL, BR };
    static constexpr int kCorners[4][3] = {{TL, TR, BL}, {TL, TR, BR}, {TL, BR, BL}, {TR, BR, BL}};
    if (!points || n < 3 || kind < 0 || kind > 3) return;
    const ZeFPoint corners[] = {{x, y}, {x + width, y}, {x, y + height}, {x + width, y + height}};
    for (int i = 0; i < 3; ++i) points[i] = corners[kCorners[kind][i]];
}
