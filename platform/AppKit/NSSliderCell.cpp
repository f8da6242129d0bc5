#include "AppKit/NSSliderCell.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSStill.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

#include <cmath>

NS_CLASS_TABLE(NSSliderCell, NSActionCell, "")
NS_CLASS_TABLE_END

namespace {

using enum NSAppearanceColorName;

/// Values outside by no more than this part of the range are held as given: the 32-bit neighbours of an end.
constexpr double kHeldOutside = 1e-7;

struct SliderColors {
    NSAppearanceColorName track, fill, knob, border;
};

SliderColors ColorsOf(const NSSliderCell& cell, bool focused)
{
    if (!cell.isEnabled()) return {disabledTrackColor, disabledAccentColor, disabledKnobColor, disabledAccentColor};
    if (cell.isHighlighted()) return {trackColor, controlAccentColor, knobPressedColor, controlAccentColor};
    const auto border = cell.isHovered() ? knobHoverBorderColor : knobBorderColor;
    return {trackColor, controlAccentColor, knobColor, focused ? controlAccentColor : border};
}

void FillCircle(CGContextRef context, NSPoint center, CGFloat radius, NSAppearanceColorName color)
{
    NSFillRounded(context, CGSquareAround(center, radius), radius, color);
}

/// The place that is drawn: from pixel to pixel along the track, so that the knob looks the same everywhere.
NSPoint OnWholePixels(NSPoint center, bool isVertical)
{
    const CGFloat scale = NSGraphicsContext::currentScale();
    CGFloat& along = isVertical ? center.y : center.x;
    along = std::round(along * scale) / scale;
    return center;
}

void DrawKnob(CGContextRef context, NSPoint center, const SliderColors& colors, bool casts)
{
    constexpr CGFloat kRadius = NSMetrics::knobRadius;
    const NSStillKey key{"knob", {NSAppearanceColor(colors.border), NSAppearanceColor(colors.knob)}, {}, casts};
    NSDrawStill(context, CGSquareAround(center, kRadius + NSSliderCell::kShadow), key, [&](CGContextRef on) {
        if (casts)
            for (const CGFloat spread : {1.5, 0.75, 0.0})
                FillCircle(on, {center.x, center.y + 1}, kRadius + spread - 0.5, shadowColor);
        FillCircle(on, center, kRadius, colors.border);
        FillCircle(on, center, kRadius - 1, colors.knob);
    });
}

void DrawTrack(CGContextRef context, NSRect track, NSAppearanceColorName color)
{
    NSDrawStill(context, track, {"track", {NSAppearanceColor(color)}},
                [&](CGContextRef on) { NSFillRounded(on, track, NSMetrics::trackThickness / 2, color); });
}

} // namespace

NSSliderCell::NSSliderCell() { NSSliderCell::setDoubleValue(0); }

bool NSSliderCell::initWithCoder(NSCoder& coder)
{
    if (!NSActionCell::initWithCoder(coder)) return false;
    setMinValue(coder.decodeDoubleForKey("minValue", 0));
    setMaxValue(coder.decodeDoubleForKey("maxValue", 1));
    setDoubleValue(coder.decodeDoubleForKey("doubleValue", 0));
    return true;
}

double NSSliderCell::constrainedValue(double value) const
{
    const double held = kHeldOutside * (mMaxValue - mMinValue);
    if (value > mMaxValue) return value - mMaxValue <= held ? value : mMaxValue;
    if (value < mMinValue) return mMinValue - value <= held ? value : mMinValue;
    return value;
}

void NSSliderCell::setDoubleValue(double value)
{
    if (std::isnan(value)) return;
    NSActionCell::setObjectValue(NSNumber::numberWithDouble(constrainedValue(value)).get());
}

void NSSliderCell::setObjectValue(NSObject* value)
{
    const auto* number = asKind<NSNumber>(value);
    setDoubleValue(number ? number->doubleValue() : 0);
}

void NSSliderCell::setMinValue(double value)
{
    if (!std::isfinite(value)) return;
    mMinValue = value;
    NSSliderCell::setDoubleValue(doubleValue());
}

void NSSliderCell::setMaxValue(double value)
{
    if (!std::isfinite(value)) return;
    mMaxValue = value;
    NSSliderCell::setDoubleValue(doubleValue());
}

double NSSliderCell::fractionOfRange(double value) const
{
    // halves, since the ends may lie further apart than a number can say
    const double range = mMaxValue / 2 - mMinValue / 2;
    if (!(range > 0)) return 0;
    return std::clamp((value / 2 - mMinValue / 2) / range, 0.0, 1.0);
}

NSPoint NSSliderCell::knobCenterForValue(double value, NSRect bounds) const
{
    constexpr CGFloat kRadius = NSMetrics::knobRadius;
    const double fraction = fractionOfRange(value);
    const CGFloat length = (mVertical ? bounds.size.height : bounds.size.width) - 2 * kRadius;
    const CGFloat travelled = kRadius + fraction * std::max(length, 0.0);
    // across the track half a point is added, so that the edges of the track lie on whole points
    if (mVertical) return {std::floor(CGRectGetMidX(bounds)) + 0.5, CGRectGetMaxY(bounds) - travelled};
    return {bounds.origin.x + travelled, std::floor(CGRectGetMidY(bounds)) + 0.5};
}

double NSSliderCell::valuePerPoint(NSRect bounds) const
{
    const CGFloat length = (mVertical ? bounds.size.height : bounds.size.width) - 2 * NSMetrics::knobRadius;
    return length > 0 ? std::max(mMaxValue / length - mMinValue / length, 0.0) : 0;
}

void NSSliderCell::drawWithFrame(NSRect frame, NSView& view)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const SliderColors colors = ColorsOf(*this, NSShowsFocus(view));
    const NSPoint knob = OnWholePixels(knobCenterForValue(doubleValue(), frame), mVertical);
    constexpr CGFloat kThickness = NSMetrics::trackThickness;
    NSRect track = frame, fill; // up to the middle of the knob, which covers where it is cut off
    if (mVertical) {
        track = CGRectMake(knob.x - kThickness / 2, frame.origin.y, kThickness, frame.size.height);
        fill = CGRectMake(track.origin.x, knob.y, kThickness, CGRectGetMaxY(frame) - knob.y);
    } else {
        track = CGRectMake(frame.origin.x, knob.y - kThickness / 2, frame.size.width, kThickness);
        fill = CGRectMake(track.origin.x, track.origin.y, knob.x - frame.origin.x, kThickness);
    }
    DrawTrack(context, track, colors.track);
    {
        const ScopedGState state(context);
        CGContextClipToRect(context, fill);
        DrawTrack(context, track, colors.fill);
    }
    DrawKnob(context, knob, colors, isEnabled());
}
