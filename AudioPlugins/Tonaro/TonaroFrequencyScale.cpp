#include "TonaroFrequencyScale.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSStill.h"
#include "CoreText/CTLine.h"

#include <cmath>

namespace {

struct RoundFrequency {
    double hz;
    const char* label;
    int importance; ///< 0 is labelled first
};
constexpr RoundFrequency kRoundFrequencies[] = {
    {100, "100", 0},   {500, "500", 1},   {1000, "1k", 0},   {2000, "2k", 1},     {5000, "5k", 1},
    {10000, "10k", 0}, {20000, "20k", 1}, {50000, "50k", 1}, {100000, "100k", 0}, {200000, "200k", 2},
};
constexpr int kLeastImportance = 2;

constexpr CGFloat kTickHeight = 5;
constexpr CGFloat kTickTop = 1;
constexpr CGFloat kLabelTop = 8;
constexpr CGFloat kLabelGap = 6; ///< least distance between two labels

const char* const kObservedKeys[] = {"minValue", "maxValue"};

struct Span {
    CGFloat left, right;
};

Span spanOfLabel(const TonaroFrequencyScale::Mark& mark)
{
    const auto line = CTLineCreate(NSUTF16FromUTF8(mark.label), NSSmallSystemFont());
    const CGFloat width = CTLineGetTypographicBounds(line).width;
    return {mark.x - width / 2, mark.x + width / 2};
}

bool isFree(Span span, const std::vector<Span>& taken)
{
    return std::none_of(taken.begin(), taken.end(), [span](Span other) {
        return span.left < other.right + kLabelGap && other.left < span.right + kLabelGap;
    });
}

void drawLabel(CGContextRef context, const TonaroFrequencyScale::Mark& mark, CGColorRef color)
{
    const auto line = CTLineCreate(NSUTF16FromUTF8(mark.label), NSSmallSystemFont());
    const CGPoint baseline{spanOfLabel(mark).left, kLabelTop + CTLineGetTypographicBounds(line).ascent};
    CTLineDraw(line, context, baseline, color);
}

} // namespace

NS_CLASS_TABLE(TonaroFrequencyScale, NSView, "")
    .outlet("slider", &TonaroFrequencyScale::slider)
NS_CLASS_TABLE_END

void TonaroFrequencyScale::awakeFromNib()
{
    for (const char* key : kObservedKeys)
        slider.call(&NSObject::addObserverForKeyPath, this, NSString::string(key).get(), nullptr);
}

void TonaroFrequencyScale::observeValueForKeyPath(const NSString*, NSObject*, void*) { setNeedsDisplay(); }

CGFloat TonaroFrequencyScale::xOf(double mel) const
{
    if (!slider.get()) return 0;
    return convertPointFromWindow(slider.get()->convertPointToWindow(slider.get()->knobCenterForValue(mel))).x;
}

std::vector<TonaroFrequencyScale::Mark> TonaroFrequencyScale::marks() const
{
    std::vector<Mark> marks;
    std::vector<int> importances;
    const double lowest = slider.call(&NSSlider::minValue), highest = slider.call(&NSSlider::maxValue);
    for (const RoundFrequency& round : kRoundFrequencies) {
        const double mel = MelFromHz(round.hz);
        if (mel < lowest || mel > highest) continue;
        marks.push_back({xOf(mel), round.label, false});
        importances.push_back(round.importance);
    }

    std::vector<Span> taken;
    for (int importance = 0; importance <= kLeastImportance; ++importance) {
        for (std::size_t i = 0; i < marks.size(); ++i) {
            if (importances[i] != importance) continue;
            const Span span = spanOfLabel(marks[i]);
            if (span.left < 0 || span.right > bounds().size.width || !isFree(span, taken)) continue;
            marks[i].isLabelled = true;
            taken.push_back(span);
        }
    }
    return marks;
}

void TonaroFrequencyScale::drawRect(NSRect)
{
    const std::array colors{NSAppearanceColor(NSAppearanceColorName::tickColor),
                            NSAppearanceColor(NSAppearanceColorName::secondaryLabelColor)};
    const double lowest = slider.call(&NSSlider::minValue), highest = slider.call(&NSSlider::maxValue);
    const NSStillKey key{"frequency scale", colors, {lowest, highest, xOf(lowest)}};
    NSDrawStill(NSGraphicsContext::currentContext(), bounds(), key, [&](CGContextRef on) {
        for (const Mark& mark : marks()) {
            CGContextSetFillColorWithColor(on, colors[0]);
            CGContextFillRect(on, CGRectMake(std::round(mark.x) - 0.5, kTickTop, 1, kTickHeight));
            if (mark.isLabelled) drawLabel(on, mark, colors[1]);
        }
    });
}
