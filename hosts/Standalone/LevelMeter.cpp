#include "Standalone/LevelMeter.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "CoreText/CTLine.h"

#include <algorithm>
#include <cmath>

NS_CLASS_TABLE(LevelMeter, NSView, "")
NS_CLASS_TABLE_END

namespace {

using enum NSAppearanceColorName;

constexpr int kLowestDecibels = -60, kTickDecibels = 12;
constexpr CGFloat kBarTop = 6, kBarHeight = NSMetrics::trackThickness, kTickTop = 16, kTickHeight = 4;
constexpr CGFloat kLabelTop = 21;
constexpr CGFloat kInset = NSMetrics::knobRadius; ///< of the scale's ends, as on the sliders below

CGFloat xOfDecibels(double decibels, CGFloat width)
{
    return kInset + (1 - decibels / kLowestDecibels) * (width - 2 * kInset);
}

void fillBar(CGContextRef context, CGFloat width, NSAppearanceColorName color)
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, CGRectMake(0, kBarTop, width, kBarHeight), std::min(kBarHeight, width) / 2);
    CGContextFillPath(context);
}

void drawTick(CGContextRef context, CGFloat x, int decibels)
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(tickColor));
    CGContextFillRect(context, CGRectMake(std::round(x) - 0.5, kTickTop, 1, kTickHeight));
    const auto line = CTLineCreate(NSUTF16FromUTF8(std::to_string(decibels)), NSSmallSystemFont());
    const CTLineBounds bounds = CTLineGetTypographicBounds(line);
    CTLineDraw(line, context, {x - bounds.width / 2, kLabelTop + bounds.ascent},
               NSAppearanceColor(secondaryLabelColor));
}

} // namespace

CGFloat LevelMeter::barEnd(float level) const
{
    const double decibels = 20 * std::log10(static_cast<double>(level)); // of nothing it is minus infinity
    const CGFloat width = bounds().size.width;
    return decibels < kLowestDecibels ? 0 : std::min(xOfDecibels(decibels, width), width);
}

void LevelMeter::setLevel(float level)
{
    const CGFloat before = barEnd(mLevel), now = barEnd(level);
    mLevel = level;
    if (before == now) return;
    setNeedsDisplayInRect(CGRectMake(0, kBarTop, std::max(before, now), kBarHeight));
}

void LevelMeter::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const CGFloat width = bounds().size.width;
    fillBar(context, width, trackColor);
    if (const CGFloat end = barEnd(mLevel); end > 0)
        fillBar(context, end, mLevel > 1 ? errorColor : controlAccentColor);
    for (int decibels = kLowestDecibels; decibels <= 0; decibels += kTickDecibels)
        drawTick(context, xOfDecibels(decibels, width), decibels);
}
