#pragma once

/// The looks that controls share: colours by name, fonts, and lengths in points.
///
/// A colour is the same object for as long as the process lives. The names also stand in interface descriptions; each
/// is the enumerator's name: `NSAppearanceColorNamed("textColor")` is `NSAppearanceColorName::textColor`.

#include "CoreText/CTLine.h"

#include <optional>
#include <string_view>

enum class NSAppearanceColorName : unsigned {
    textColor,
    secondaryLabelColor,
    disabledControlTextColor,
    controlAccentColor,
    pressedAccentColor,  ///< the accent under a pressed button
    alternateTextColor,  ///< text and marks on the accent
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
