#include "TonaroGraph.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kMostColumns = 1 << 15;

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

} // namespace

TonaroGraph::TonaroGraph(const CGAffineTransform& ctm, const std::vector<CGPoint>& points, CGRect area, CGFloat width)
{
    const CGFloat scale = ctm.a, half = width * scale / 2, columns = std::round(area.size.width * scale);
    if (points.size() < 2 || CGRectIsEmpty(area) || !(columns >= 1 && columns < kMostColumns)) return;
    mColumns = static_cast<std::size_t>(columns);
    const auto heights = HeightsAt(points, area.origin.x, mColumns, scale);
    const auto rowOf = [&](CGFloat y) { return y * scale + ctm.ty; };
    const auto [highest, lowest] = std::minmax_element(heights.begin(), heights.end());
    const CGFloat top = std::floor(std::max(rowOf(area.origin.y), rowOf(*highest) - half));
    const CGFloat rows = std::ceil(std::min(rowOf(CGRectGetMaxY(area)), rowOf(*lowest) + half)) - top;
    if (!(rows >= 1)) return;
    mOrigin = {std::round(area.origin.x * scale + ctm.tx), top};
    mRows = static_cast<std::size_t>(rows);
    mBytesPerRow = (mColumns + 3) / 4 * 4;
    mCoverage.resize(mBytesPerRow * mRows);
    for (std::size_t i = 0; i < mColumns; ++i) {
        const auto [upper, lower] = std::minmax({rowOf(heights[i]), rowOf(heights[i + 1])});
        fill(i, upper - half - top, lower + half - top);
    }
}

void TonaroGraph::fill(std::size_t column, CGFloat top, CGFloat bottom)
{
    top = std::clamp(top, 0.0, static_cast<CGFloat>(mRows));
    bottom = std::clamp(bottom, top, static_cast<CGFloat>(mRows));
    for (auto row = static_cast<std::size_t>(top); static_cast<CGFloat>(row) < bottom; ++row) {
        const auto above = static_cast<CGFloat>(row);
        const CGFloat covered = std::min(bottom, above + 1) - std::max(top, above);
        mCoverage[row * mBytesPerRow + column] =
            covered < 1 ? static_cast<std::uint8_t>(std::lround(covered * 255)) : 255;
    }
}

void TonaroGraph::draw(CGContextRef context, NSAppearanceColorName color) const
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    CGContextFillCoverage(context, mOrigin, {mColumns, mRows, mBytesPerRow, mCoverage.data()});
}
