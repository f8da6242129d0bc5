#include "AppKit/NSAppearance.h"

#include <cstdint>
#include <iterator>
#include <map>

namespace {

using enum NSAppearanceColorName;

struct ColorRow {
    NSAppearanceColorName color; // the row's own index
    std::string_view name;
    std::uint32_t light; // 0xRRGGBBAA
};

#define ROW(name, light)                                                                                               \
    {                                                                                                                  \
        name, #name, light                                                                                             \
    }
constexpr ColorRow kColors[] = {
    ROW(textColor, 0x1B1F26FF),
    ROW(secondaryLabelColor, 0x5B6472FF),
    ROW(disabledControlTextColor, 0xA0A7B2FF),
    ROW(controlAccentColor, 0x1F6FEBFF),
    ROW(pressedAccentColor, 0x1858BDFF),
    ROW(alternateTextColor, 0xFFFFFFFF),
    ROW(disabledAccentColor, 0xB4BCC8FF),
    ROW(trackColor, 0xCFD4DCFF),
    ROW(disabledTrackColor, 0xE4E7ECFF),
    ROW(knobColor, 0xFFFFFFFF),
    ROW(knobBorderColor, 0x98A1B0FF),
    ROW(knobHoverBorderColor, 0x5B6472FF),
    ROW(knobPressedColor, 0xDCE8FCFF),
    ROW(disabledKnobColor, 0xF4F5F7FF),
    ROW(shadowColor, 0x10182812),
    ROW(cardColor, 0xFFFFFFFF),
    ROW(cardBorderColor, 0xD9DCE3FF),
    ROW(fieldColor, 0xFFFFFFFF),
    ROW(fieldBorderColor, 0xB5BCC7FF),
    ROW(fieldHoverBorderColor, 0x8A93A2FF),
    ROW(fieldPressedColor, 0xE6EAF0FF),
    ROW(disabledFieldColor, 0xF6F7F9FF),
    ROW(disabledFieldBorderColor, 0xDADEE5FF),
    ROW(windowBackgroundColor, 0xECEEF2FF),
    ROW(errorColor, 0xD1242FFF),
    ROW(selectionColor, 0xB9D4FBFF),
    ROW(inactiveSelectionColor, 0xDDE1E8FF),
    ROW(focusRingColor, 0x1F6FEB59),
    ROW(tickColor, 0x9AA2AFFF),
    ROW(bubbleColor, 0x2B313BFF),
    ROW(bubbleTextColor, 0xFFFFFFFF),
    ROW(menuColor, 0xFFFFFFFF),
    ROW(menuBorderColor, 0xB5BCC7FF),
    ROW(menuSeparatorColor, 0xE1E4EAFF),
    ROW(menuHighlightColor, 0x1F6FEBFF),
    ROW(menuHighlightTextColor, 0xFFFFFFFF),
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

} // namespace

CGColorRef NSAppearanceColor(NSAppearanceColorName name)
{
    static RetainPtr<CGColor> colors[std::size(kColors)];
    const auto index = static_cast<std::size_t>(name);
    if (!colors[index]) colors[index] = ColorFromWord(kColors[index].light);
    return colors[index].get();
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
