#include "TonaroGraph.h"

#include "CoreGraphics/CGDataProvider.h"
#include "CoreGraphics/CGImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace {

using Pixel = std::array<std::uint8_t, 4>;
constexpr std::size_t kShades = 256;

/// The colour at each coverage, premultiplied.
std::array<Pixel, kShades> ShadesOf(NSAppearanceColorName name)
{
    const auto components = CGColorGetComponents(NSAppearanceColor(name));
    std::array<Pixel, kShades> shades{};
    for (std::size_t i = 0; i < kShades; ++i) {
        const CGFloat alpha = components[3] * static_cast<CGFloat>(i);
        for (std::size_t k = 0; k < 3; ++k)
            shades[i][k] = static_cast<std::uint8_t>(std::lround(components[k] * alpha));
        shades[i][3] = static_cast<std::uint8_t>(std::lround(alpha));
    }
    return shades;
}

/// Columns of a picture, from a top to a bottom that may lie between its rows.
class Columns {
public:
    Columns(std::size_t columns, std::size_t rows, NSAppearanceColorName color)
        : mColumns(columns), mRows(rows), mPixels(columns * rows), mShades(ShadesOf(color))
    {
    }

    void fill(std::size_t column, CGFloat top, CGFloat bottom)
    {
        top = std::clamp(top, 0.0, static_cast<CGFloat>(mRows));
        bottom = std::clamp(bottom, top, static_cast<CGFloat>(mRows));
        for (auto row = static_cast<std::size_t>(top); static_cast<CGFloat>(row) < bottom; ++row) {
            const auto above = static_cast<CGFloat>(row);
            const CGFloat covered = std::min(bottom, above + 1) - std::max(top, above);
            // nearly all rows are covered as a whole, and rounding is a call
            const auto shade =
                covered < 1 ? static_cast<std::size_t>(std::lround(covered * (kShades - 1))) : kShades - 1;
            mPixels[row * mColumns + column] = mShades[shade];
        }
    }

    void draw(CGContextRef context, CGRect place) const
    {
        const auto bytes =
            CGDataProviderCreateWithData(nullptr, mPixels.data(), mPixels.size() * sizeof(Pixel), nullptr);
        const auto image = CGImageCreate(mColumns, mRows, mColumns * sizeof(Pixel), bytes);
        CGContextDrawImage(context, place, image);
    }

private:
    std::size_t mColumns, mRows;
    std::vector<Pixel> mPixels;
    std::array<Pixel, kShades> mShades;
};

} // namespace

void TonaroDrawGraph(CGContextRef context, const std::vector<CGPoint>& heights, CGRect area, CGFloat width,
                     NSAppearanceColorName color)
{
    const CGAffineTransform ctm = CGContextGetCTM(context);
    const CGFloat scale = ctm.a, half = width * scale / 2;
    if (heights.size() < 2 || !(scale > 0) || CGRectIsEmpty(area)) return;
    const auto rowOf = [&](CGFloat y) { return y * scale + ctm.ty; };
    const auto isHigher = [](CGPoint a, CGPoint b) { return a.y < b.y; };
    const auto [highest, lowest] = std::minmax_element(heights.begin(), heights.end(), isHigher);
    const CGFloat left = std::round(area.origin.x * scale + ctm.tx);
    const CGFloat top = std::floor(std::max(rowOf(area.origin.y), rowOf(highest->y) - half));
    const CGFloat rows = std::ceil(std::min(rowOf(CGRectGetMaxY(area)), rowOf(lowest->y) + half)) - top;
    if (!(rows >= 1)) return;
    const std::size_t count = heights.size() - 1;
    Columns columns(count, static_cast<std::size_t>(rows), color);
    for (std::size_t i = 0; i < count; ++i) {
        const auto [upper, lower] = std::minmax({rowOf(heights[i].y), rowOf(heights[i + 1].y)});
        columns.fill(i, upper - half - top, lower + half - top);
    }
    columns.draw(context, CGRectMake((left - ctm.tx) / scale, (top - ctm.ty) / scale,
                                     static_cast<CGFloat>(count) / scale, rows / scale));
}
