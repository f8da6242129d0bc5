#include "AppKit/NSAppearance.h"

#include "Foundation/NSNotification.h"

#include <cstdint>
#include <iterator>
#include <map>

namespace {

using enum NSAppearanceColorName;

struct ColorRow {
    NSAppearanceColorName color; // the row's own index
    std::string_view name;
    std::uint32_t values[2]; // light and dark, 0xRRGGBBAA
};

#define ROW(name, light, dark)                                                                                         \
    {                                                                                                                  \
        name, #name, { light, dark }                                                                                   \
    }
constexpr ColorRow kColors[] = {
    ROW(textColor, 0x1B1F26FF, 0xE6E9EDFF),
    ROW(secondaryLabelColor, 0x5B6472FF, 0x9EA8B5FF),
    ROW(disabledControlTextColor, 0xA0A7B2FF, 0x656D79FF),
    ROW(controlAccentColor, 0x1F6FEBFF, 0x5AA2FFFF),
    ROW(pressedAccentColor, 0x1858BDFF, 0x3F86E6FF),
    ROW(alternateTextColor, 0xFFFFFFFF, 0x10151CFF),
    ROW(disabledAccentColor, 0xB4BCC8FF, 0x525A66FF),
    ROW(trackColor, 0xCFD4DCFF, 0x3C434CFF),
    ROW(disabledTrackColor, 0xE4E7ECFF, 0x31363DFF),
    ROW(knobColor, 0xFFFFFFFF, 0xDFE4EAFF),
    ROW(knobBorderColor, 0x8A93A2FF, 0x16191DFF),
    ROW(knobHoverBorderColor, 0x5B6472FF, 0xFFFFFFFF),
    ROW(knobPressedColor, 0xDCE8FCFF, 0xB5D3FBFF),
    ROW(disabledKnobColor, 0xF4F5F7FF, 0x3A4048FF),
    ROW(shadowColor, 0x10182812, 0x00000030),
    ROW(cardColor, 0xFFFFFFFF, 0x25292FFF),
    ROW(cardBorderColor, 0xD9DCE3FF, 0x353B43FF),
    ROW(fieldColor, 0xFFFFFFFF, 0x1A1D22FF),
    ROW(fieldBorderColor, 0x8A93A2FF, 0x6E7683FF),
    ROW(fieldHoverBorderColor, 0x5B6472FF, 0x9EA8B5FF),
    ROW(fieldPressedColor, 0xE6EAF0FF, 0x30353DFF),
    ROW(disabledFieldColor, 0xF6F7F9FF, 0x202429FF),
    ROW(disabledFieldBorderColor, 0xDADEE5FF, 0x3C434CFF),
    ROW(windowBackgroundColor, 0xECEEF2FF, 0x1B1E23FF),
    ROW(errorColor, 0xD1242FFF, 0xFF6B6BFF),
    ROW(selectionColor, 0xB9D4FBFF, 0x27497AFF),
    ROW(inactiveSelectionColor, 0xDDE1E8FF, 0x3A4049FF),
    ROW(focusRingColor, 0x1F6FEBC0, 0x5AA2FFA6),
    ROW(tickColor, 0x8A93A2FF, 0x757D89FF),
    ROW(bubbleColor, 0x2B313BFF, 0xE2E6ECFF),
    ROW(bubbleTextColor, 0xFFFFFFFF, 0x1B1F26FF),
    ROW(menuColor, 0xFFFFFFFF, 0x2A2E35FF),
    ROW(menuBorderColor, 0xB5BCC7FF, 0x454D57FF),
    ROW(menuSeparatorColor, 0xE1E4EAFF, 0x3C434CFF),
    ROW(menuHighlightColor, 0x1F6FEBFF, 0x5AA2FFFF),
    ROW(menuHighlightTextColor, 0xFFFFFFFF, 0x10151CFF),
};
#undef ROW

constexpr bool RowsMatchTheirIndex()
{
    for (std::size_t i = 0; i < std::size(kColors); ++i)
        if (static_cast<std::size_t>(kColors[i].color) != i) return false;
    return static_cast<std::size_t>(menuHighlightTextColor) + 1 == std::size(kColors);
}
static_assert(RowsMatchTheirIndex());

RetainPtr<CGColor> ColorFromWord(std::uint32_t rgba)
{
    const auto component = [rgba](unsigned shift) { return ((rgba >> shift) & 0xFF) / 255.0; };
    return CGColorCreateRGBA(component(24), component(16), component(8), component(0));
}

NSAppearanceName gCurrent = NSAppearanceName::light;

} // namespace

NSAppearanceName NSAppearance::current() { return gCurrent; }

void NSAppearance::setCurrent(NSAppearanceName name)
{
    if (std::exchange(gCurrent, name) == name) return;
    const auto notification = NSString::string(NSAppearanceDidChangeNotification);
    NSNotificationCenter::defaultCenter()->postNotificationName(notification.get(), nullptr);
}

CGColorRef NSAppearanceColor(NSAppearanceColorName name)
{
    static RetainPtr<CGColor> colors[std::size(kColors)][std::size(kColors[0].values)];
    const auto index = static_cast<std::size_t>(name), column = static_cast<std::size_t>(NSAppearance::current());
    RetainPtr<CGColor>& color = colors[index][column];
    if (!color) color = ColorFromWord(kColors[index].values[column]);
    return color.get();
}

std::optional<NSAppearanceColorName> NSAppearanceColorNamed(std::string_view name)
{
    for (const ColorRow& row : kColors)
        if (row.name == name) return row.color;
    return std::nullopt;
}

CTFontRef NSSystemFont(CGFloat size)
{
    static std::map<CGFloat, RetainPtr<CTFont>> fonts;
    RetainPtr<CTFont>& font = fonts[size];
    if (!font) font = CTFontCreateWithName("Lucida Grande"_ns.get(), size);
    return font.get();
}

CTFontRef NSSmallSystemFont() { return NSSystemFont(NSMetrics::smallSystemFontSize); }

CTFontRef NSSystemBoldFont()
{
    static const RetainPtr<CTFont> font =
        CTFontCreateWithName("Lucida Grande-Bold"_ns.get(), NSMetrics::systemFontSize);
    return font.get();
}
