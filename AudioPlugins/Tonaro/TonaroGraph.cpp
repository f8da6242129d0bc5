#include "TonaroGraph.h"

#include <algorithm>
#include <cmath>

TonaroGraph::TonaroGraph(const CGAffineTransform& ctm, const std::vector<CGPoint>& heights, CGRect area, CGFloat width)
{
    const CGFloat scale = ctm.a, half = width * scale / 2;
    if (heights.size() < 2 || !(scale > 0) || CGRectIsEmpty(area)) return;
    const auto rowOf = [&](CGFloat y) { return y * scale + ctm.ty; };
    const auto isHigher = [](CGPoint a, CGPoint b) { return a.y < b.y; };
    const auto [highest, lowest] = std::minmax_element(heights.begin(), heights.end(), isHigher);
    const CGFloat top = std::floor(std::max(rowOf(area.origin.y), rowOf(highest->y) - half));
    const CGFloat rows = std::ceil(std::min(rowOf(CGRectGetMaxY(area)), rowOf(lowest->y) + half)) - top;
    if (!(rows >= 1)) return;
    mOrigin = {std::round(area.origin.x * scale + ctm.tx), top};
    mColumns = heights.size() - 1;
    mRows = static_cast<std::size_t>(rows);
    mBytesPerRow = (mColumns + 3) / 4 * 4;
    mCoverage.resize(mBytesPerRow * mRows);
    for (std::size_t i = 0; i < mColumns; ++i) {
        const auto [upper, lower] = std::minmax({rowOf(heights[i].y), rowOf(heights[i + 1].y)});
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
        mCoverage[row * mBytesPerRow + column] = static_cast<std::uint8_t>(std::lround(covered * 255));
    }
}

void TonaroGraph::draw(CGContextRef context, NSAppearanceColorName color) const
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    CGContextFillCoverage(context, mOrigin, {mColumns, mRows, mBytesPerRow, mCoverage.data()});
}
