#pragma once

/// The looks that controls share: colours by name, fonts, and lengths in points.
///
/// Every colour has a light and a dark value; the process shows one of the two appearances at a time. What is kept from
/// one drawing to the next is the name of a colour, never the colour. The names also stand in interface descriptions;
/// each is the enumerator's name: `NSAppearanceColorNamed("textColor")` is `NSAppearanceColorName::textColor`.
///
/// On what they are drawn on, text has a contrast of at least 4.5, and lines and marks that say something at least 3;
/// what is switched off may have less.

#include "CoreText/CTLine.h"

#include <optional>
#include <string_view>

enum class NSAppearanceName : unsigned { light, dark };

namespace NSAppearance {
NSAppearanceName current(); ///< light at first
/// Another appearance posts NSAppearanceDidChangeNotification, and all windows draw themselves anew. Programs leave
/// this to NSApplication, which follows the desktop.
void setCurrent(NSAppearanceName name);
} // namespace NSAppearance

inline constexpr const char* NSAppearanceDidChangeNotification = "NSAppearanceDidChangeNotification";

enum class NSAppearanceColorName : unsigned {
    textColor,
    secondaryLabelColor,
    disabledControlTextColor,
    controlAccentColor,
    pressedAccentColor,  ///< the accent under a pressed button
    alternateTextColor,  ///< marks on the accent
    disabledAccentColor, ///< the accent of a control that is switched off
    trackColor,
    disabledTrackColor,
    knobColor,
    knobBorderColor,
    knobHoverBorderColor,
    knobPressedColor,
    disabledKnobColor,
    shadowColor, ///< one layer of a soft shadow; several lie on each other
    cardColor,
    cardBorderColor,
    fieldColor,
    fieldBorderColor,
    fieldHoverBorderColor,
    fieldPressedColor,
    disabledFieldColor,
    disabledFieldBorderColor,
    windowBackgroundColor,
    errorColor,
    selectionColor,
    inactiveSelectionColor, ///< of a selection without the keyboard
    focusRingColor,
    tickColor,
    bubbleColor,
    bubbleTextColor,
    menuColor,
    menuBorderColor,
    menuSeparatorColor,
    menuHighlightColor,
    menuHighlightTextColor,
};

/// In the current appearance; the same object each time.
CGColorRef NSAppearanceColor(NSAppearanceColorName name);
/// No value for a name that isn't in the list above.
std::optional<NSAppearanceColorName> NSAppearanceColorNamed(std::string_view name);

/// Lengths in points.
namespace NSMetrics {
inline constexpr CGFloat systemFontSize = 13;
inline constexpr CGFloat smallSystemFontSize = 11;
inline constexpr CGFloat controlHeight = 26;
inline constexpr CGFloat controlCornerRadius = 5;
inline constexpr CGFloat cardCornerRadius = 8;
inline constexpr CGFloat knobRadius = 10;
inline constexpr CGFloat trackThickness = 5;
inline constexpr CGFloat checkBoxSize = 18;
inline constexpr CGFloat helpButtonSize = 24;
inline constexpr CGFloat focusRingWidth = 3;
inline constexpr CGFloat textInset = 10; ///< from the edge of a control to its text
} // namespace NSMetrics

/// The font of controls at a size, made once for each size.
CTFontRef NSSystemFont(CGFloat size = NSMetrics::systemFontSize);
CTFontRef NSSmallSystemFont();
CTFontRef NSSystemBoldFont();
