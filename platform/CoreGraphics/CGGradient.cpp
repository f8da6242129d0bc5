#include "CoreGraphics/CGCairo.h"

#include <algorithm>

CGGradient::CGGradient(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CGGradient::~CGGradient() = default;

RetainPtr<CGGradient> CGGradientCreate(std::span<const CGColorRef> colors, std::span<const CGFloat> locations)
{
    const std::size_t count = std::min(colors.size(), locations.size());
    if (count == 0) return nullptr;
    auto contents = std::make_unique<CGGradient::Contents>();
    for (std::size_t i = 0; i < count; ++i)
        contents->stops.push_back({CGUnitValue(locations[i]), CGColorGetComponents(colors[i])});
    return RetainPtr<CGGradient>::adopt(new CGGradient(std::move(contents)));
}
