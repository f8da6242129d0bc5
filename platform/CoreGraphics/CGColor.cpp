#include "CoreGraphics/CGCairo.h"

#include <algorithm>
#include <cmath>

CGColor::CGColor(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CGColor::~CGColor() = default;

CGFloat CGUnitValue(CGFloat value) { return std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0); }

RetainPtr<CGColor> CGColorCreateRGBA(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    auto contents = std::make_unique<CGColor::Contents>();
    contents->components = {CGUnitValue(red), CGUnitValue(green), CGUnitValue(blue), CGUnitValue(alpha)};
    return RetainPtr<CGColor>::adopt(new CGColor(std::move(contents)));
}

RetainPtr<CGColor> CGColorCreateWithPatternImage(CGImageRef image, CGFloat imageScale)
{
    if (!image || !(imageScale > 0) || !std::isfinite(imageScale)) return nullptr;
    auto contents = std::make_unique<CGColor::Contents>();
    contents->pattern = CGRetained(image);
    contents->patternScale = imageScale;
    return RetainPtr<CGColor>::adopt(new CGColor(std::move(contents)));
}

std::array<CGFloat, 4> CGColorGetComponents(CGColorRef color)
{
    return color ? color->contents().components : std::array<CGFloat, 4>{};
}
