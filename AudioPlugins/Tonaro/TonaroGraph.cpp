#include "TonaroGraph.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kLongestSide = 1 << 15; ///< pixels
constexpr std::size_t kColumnsOfStrip = 160;
constexpr std::size_t kPixelsPerStrip = 4500; ///< that are drawn while a strip is set up

/// y in the middle of each of `count` parts, which are `width` wide, from `left` on.
std::vector<CGFloat> HeightsAt(const std::vector<CGPoint>& points, CGFloat left, CGFloat width, std::size_t count)
{
    std::vector<CGFloat> heights;
    heights.reserve(count);
    std::size_t next = 1;
    for (std::size_t i = 0; i < count; ++i) {
        const CGFloat x = left + (static_cast<CGFloat>(i) + 0.5) * width;
        while (next + 1 < points.size() && points[next].x < x) ++next;
        const CGPoint from = points[next - 1], to = points[next];
        const CGFloat part = to.x > from.x ? std::clamp((x - from.x) / (to.x - from.x), 0.0, 1.0) : 1;
        heights.push_back(from.y + part * (to.y - from.y));
    }
    return heights;
}

bool IsSteepAnywhere(const std::vector<CGPoint>& points)
{
    const auto isSteep = [](CGPoint from, CGPoint to) { return std::abs(to.y - from.y) > 0.5 * (to.x - from.x); };
    return std::adjacent_find(points.begin(), points.end(), isSteep) != points.end();
}

/// What a round pen covers above and below a line, in pixels of the device.
struct Stroke {
    int parts;               ///< of a column, of which each has a top and a bottom of its own
    CGFloat highest, lowest; ///< nothing is drawn beyond
    std::vector<CGFloat> tops{}, bottoms{};

    struct Span {
        CGFloat top, rows; ///< whole
    };

    void follow(const std::vector<CGFloat>& line, CGFloat radius)
    {
        const int count = static_cast<int>(line.size()), reach = static_cast<int>(radius * parts);
        std::vector<CGFloat> reaches; // of the pen up and down, at so many parts from its middle
        for (int k = 0; k <= reach; ++k)
            reaches.push_back(std::sqrt(radius * radius - CGFloat(k * k) / (parts * parts)));
        tops.reserve(line.size());
        bottoms.reserve(line.size());
        for (int i = 0; i < count; ++i) {
            CGFloat top = lowest, bottom = highest;
            for (int k = std::max(0, i - reach); k <= std::min(count - 1, i + reach); ++k) {
                const CGFloat half = reaches[static_cast<std::size_t>(std::abs(k - i))];
                top = std::min(top, line[static_cast<std::size_t>(k)] - half);
                bottom = std::max(bottom, line[static_cast<std::size_t>(k)] + half);
            }
            tops.push_back(std::max(top, highest));
            bottoms.push_back(std::min(bottom, lowest));
        }
    }

    std::size_t columns() const { return tops.size() / static_cast<std::size_t>(parts); }

    /// What it touches of some columns.
    Span touched(std::size_t first, std::size_t last) const
    {
        const auto part = [this](const auto& all, std::size_t column) {
            return all.begin() + static_cast<std::ptrdiff_t>(column) * parts;
        };
        const CGFloat top = std::floor(*std::min_element(part(tops, first), part(tops, last)));
        return {top, std::ceil(*std::max_element(part(bottoms, first), part(bottoms, last))) - top};
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
    const CGFloat scale = ctm.a, wide = std::round(area.size.width * scale), high = area.size.height * scale;
    if (points.size() < 2 || CGRectIsEmpty(area) || !(wide >= 1 && wide < kLongestSide && high < kLongestSide)) return;
    const auto rowOf = [&](CGFloat y) { return y * scale + ctm.ty; };
    Stroke stroke{IsSteepAnywhere(points) ? 4 : 1, rowOf(area.origin.y), rowOf(CGRectGetMaxY(area))};
    const auto partsOfColumn = static_cast<std::size_t>(stroke.parts);
    std::vector<CGFloat> line =
        HeightsAt(points, area.origin.x, 1 / (scale * stroke.parts), static_cast<std::size_t>(wide) * partsOfColumn);
    for (CGFloat& y : line) y = rowOf(y);
    stroke.follow(line, width * scale / 2);
    // a curve that rises slowly leaves most of the room around it out in strips, a wave none
    const std::size_t columns = stroke.columns();
    const bool isFlat = stroke.costInStripsOf(kColumnsOfStrip) < stroke.costInStripsOf(columns);
    const std::size_t columnsOfStrip = isFlat ? kColumnsOfStrip : columns;
    const CGFloat left = std::round(area.origin.x * scale + ctm.tx);
    for (std::size_t first = 0; first < columns; first += columnsOfStrip) {
        const std::size_t last = std::min(first + columnsOfStrip, columns);
        const Stroke::Span span = stroke.touched(first, last);
        if (!(span.rows >= 1)) continue;
        Strip& strip = mStrips.emplace_back(CGPoint{left + static_cast<CGFloat>(first), span.top}, last - first,
                                            static_cast<std::size_t>(span.rows));
        for (std::size_t i = first * partsOfColumn; i < last * partsOfColumn; ++i)
            strip.cover(i / partsOfColumn - first, stroke.tops[i] - span.top, stroke.bottoms[i] - span.top,
                        256 / stroke.parts);
    }
}

/// Adds what a part of a column covers, `weight` for a whole pixel.
void TonaroGraph::Strip::cover(std::size_t column, CGFloat top, CGFloat bottom, int weight)
{
    const auto last = static_cast<int>(rows) * weight;
    const int from = std::clamp(static_cast<int>(top * weight), 0, last);
    const int to = std::clamp(static_cast<int>(bottom * weight), from, last);
    for (int row = from / weight; row * weight < to; ++row) {
        const int covered = std::min(to, (row + 1) * weight) - std::max(from, row * weight);
        std::uint8_t& pixel = coverage[static_cast<std::size_t>(row) * bytesPerRow + column];
        pixel = static_cast<std::uint8_t>(std::min(pixel + covered, 255));
    }
}

void TonaroGraph::draw(CGContextRef context, NSAppearanceColorName color) const
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    for (const Strip& strip : mStrips)
        CGContextFillCoverage(context, strip.origin,
                              {strip.columns, strip.rows, strip.bytesPerRow, strip.coverage.data()});
}
