#include "TonaroGraph.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kMostColumns = 1 << 15;
constexpr std::size_t kColumnsOfStrip = 160;
constexpr std::size_t kPixelsPerStrip = 4500; ///< that are drawn while a strip is set up

/// y at the edges of `columns` columns from `left` on, each `1 / scale` wide.
std::vector<CGFloat> HeightsAt(const std::vector<CGPoint>& points, CGFloat left, std::size_t columns, CGFloat scale)
{
    std::vector<CGFloat> heights;
    heights.reserve(columns + 1);
    std::size_t next = 1;
    for (std::size_t i = 0; i <= columns; ++i) {
        const CGFloat x = left + static_cast<CGFloat>(i) / scale;
        while (next + 1 < points.size() && points[next].x < x) ++next;
        const CGPoint from = points[next - 1], to = points[next];
        const CGFloat part = to.x > from.x ? std::clamp((x - from.x) / (to.x - from.x), 0.0, 1.0) : 1;
        heights.push_back(from.y + part * (to.y - from.y));
    }
    return heights;
}

/// A curve in pixels of the device.
struct Curve {
    std::vector<CGFloat> rows; ///< where it is at the edges of its columns
    CGFloat half;              ///< of the line's width
    CGFloat top, bottom;       ///< nothing is drawn beyond

    struct Span {
        CGFloat top, rows; ///< whole
    };

    std::size_t columns() const { return rows.size() - 1; }

    /// What it touches between two edges.
    Span touched(std::size_t first, std::size_t last) const
    {
        const auto edge = [&](std::size_t i) { return rows.begin() + static_cast<std::ptrdiff_t>(i); };
        const auto [highest, lowest] = std::minmax_element(edge(first), edge(last) + 1);
        const CGFloat from = std::floor(std::max(top, *highest - half));
        return {from, std::max(0.0, std::ceil(std::min(bottom, *lowest + half)) - from)};
    }

    /// In pixels that are looked at.
    CGFloat costInStripsOf(std::size_t width) const
    {
        CGFloat cost = 0;
        for (std::size_t first = 0; first < columns(); first += width) {
            const std::size_t last = std::min(first + width, columns());
            cost += touched(first, last).rows * static_cast<CGFloat>(last - first) + kPixelsPerStrip;
        }
        return cost;
    }
};

} // namespace

TonaroGraph::TonaroGraph(const CGAffineTransform& ctm, const std::vector<CGPoint>& points, CGRect area, CGFloat width)
{
    const CGFloat scale = ctm.a, wide = std::round(area.size.width * scale);
    if (points.size() < 2 || CGRectIsEmpty(area) || !(wide >= 1 && wide < kMostColumns)) return;
    const auto rowOf = [&](CGFloat y) { return y * scale + ctm.ty; };
    Curve curve{HeightsAt(points, area.origin.x, static_cast<std::size_t>(wide), scale), width * scale / 2,
                rowOf(area.origin.y), rowOf(CGRectGetMaxY(area))};
    for (CGFloat& row : curve.rows) row = rowOf(row);
    // a curve that rises slowly leaves most of the room around it out in strips, a wave none
    const std::size_t columns = curve.columns();
    const bool isFlat = curve.costInStripsOf(kColumnsOfStrip) < curve.costInStripsOf(columns);
    const std::size_t columnsOfStrip = isFlat ? kColumnsOfStrip : columns;
    const CGFloat left = std::round(area.origin.x * scale + ctm.tx);
    for (std::size_t first = 0; first < columns; first += columnsOfStrip) {
        const std::size_t last = std::min(first + columnsOfStrip, columns);
        const Curve::Span span = curve.touched(first, last);
        if (!(span.rows >= 1)) continue;
        Strip& strip = mStrips.emplace_back(CGPoint{left + static_cast<CGFloat>(first), span.top}, last - first,
                                            static_cast<std::size_t>(span.rows));
        for (std::size_t i = first; i < last; ++i) {
            const auto [upper, lower] = std::minmax({curve.rows[i], curve.rows[i + 1]});
            strip.fill(i - first, upper - curve.half - span.top, lower + curve.half - span.top);
        }
    }
}

void TonaroGraph::Strip::fill(std::size_t column, CGFloat top, CGFloat bottom)
{
    top = std::clamp(top, 0.0, static_cast<CGFloat>(rows));
    bottom = std::clamp(bottom, top, static_cast<CGFloat>(rows));
    for (auto row = static_cast<std::size_t>(top); static_cast<CGFloat>(row) < bottom; ++row) {
        const auto above = static_cast<CGFloat>(row);
        const CGFloat covered = std::min(bottom, above + 1) - std::max(top, above);
        coverage[row * bytesPerRow + column] =
            covered < 1 ? static_cast<std::uint8_t>(std::lround(covered * 255)) : 255;
    }
}

void TonaroGraph::draw(CGContextRef context, NSAppearanceColorName color) const
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    for (const Strip& strip : mStrips)
        CGContextFillCoverage(context, strip.origin,
                              {strip.columns, strip.rows, strip.bytesPerRow, strip.coverage.data()});
}
