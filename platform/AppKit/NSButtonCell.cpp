#include "AppKit/NSButtonCell.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

NS_CLASS_TABLE(NSButtonCell, NSActionCell, "")
NS_CLASS_TABLE_END

namespace {

using enum NSAppearanceColorName;

constexpr CGFloat kTitleGap = 9; ///< from a check box to its title

bool Reads(NSCoder& coder, const char* key, const char* text)
{
    const auto value = coder.decodeStringForKey(key);
    return value && value->utf8() == text;
}

NSBoxStyle BoxStyleOf(const NSButtonCell& cell, bool filled, bool focused)
{
    if (filled && !cell.isEnabled()) return {disabledAccentColor, disabledAccentColor};
    if (filled && cell.isHighlighted()) return {pressedAccentColor, pressedAccentColor};
    if (filled) return {controlAccentColor, controlAccentColor};
    if (!cell.isEnabled()) return {disabledFieldColor, disabledFieldBorderColor};
    const auto border = cell.isHovered() || cell.isHighlighted() ? fieldHoverBorderColor : fieldBorderColor;
    return {cell.isHighlighted() ? fieldPressedColor : fieldColor, focused ? controlAccentColor : border};
}

NSAppearanceColorName TitleColorOf(const NSButtonCell& cell)
{
    return cell.isEnabled() ? NSAppearanceColorName::textColor : disabledControlTextColor;
}

} // namespace

NSButtonCell::NSButtonCell() { NSButtonCell::setState(NSOffState); }

bool NSButtonCell::initWithCoder(NSCoder& coder)
{
    if (!NSActionCell::initWithCoder(coder)) return false;
    if (Reads(coder, "type", "check")) mType = NSSwitchButton;
    if (Reads(coder, "bezelStyle", "helpButton")) mBezelStyle = NSHelpButtonBezelStyle;
    setState(Reads(coder, "state", "on") ? NSOnState : NSOffState);
    return true;
}

void NSButtonCell::setObjectValue(NSObject* value)
{
    const auto* number = asKind<NSNumber>(value);
    setState(number && number->doubleValue() > 0 ? NSOnState : NSOffState);
}

void NSButtonCell::setState(int state)
{
    NSActionCell::setObjectValue(NSNumber::numberWithInt(state > 0 ? NSOnState : NSOffState).get());
}

void NSButtonCell::setNextState()
{
    if (mType == NSSwitchButton) setState(state() == NSOnState ? NSOffState : NSOnState);
}

NSRect NSButtonCell::boxRect(NSRect frame) const
{
    if (mType == NSSwitchButton) {
        const CGFloat size = NSMetrics::checkBoxSize;
        const NSRect column = CGRectMake(frame.origin.x, frame.origin.y, size, frame.size.height);
        return NSCenteredRect(column, {size, size});
    }
    if (mBezelStyle != NSHelpButtonBezelStyle) return frame;
    const CGFloat size = std::min({NSMetrics::helpButtonSize, frame.size.width, frame.size.height});
    return NSCenteredRect(frame, {size, size});
}

CGFloat NSButtonCell::boxCornerRadius() const
{
    if (mType == NSSwitchButton) return NSMetrics::controlCornerRadius - 1;
    return mBezelStyle == NSHelpButtonBezelStyle ? NSMetrics::helpButtonSize / 2 : NSMetrics::controlCornerRadius;
}

void NSButtonCell::drawWithFrame(NSRect frame, NSView& view)
{
    if (mType == NSSwitchButton)
        drawCheckBox(frame, NSShowsFocus(view));
    else
        drawBezel(frame, NSShowsFocus(view));
}

void NSButtonCell::drawCheckBox(NSRect frame, bool focused) const
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const NSRect box = boxRect(frame);
    NSBoxStyle style = BoxStyleOf(*this, state() == NSOnState, focused);
    style.radius = boxCornerRadius();
    NSDrawBox(context, box, style);
    if (state() == NSOnState)
        NSDrawCheckMark(context, {CGRectGetMidX(box), CGRectGetMidY(box)}, box.size.width, alternateTextColor);

    NSRect text = frame;
    text.origin.x = CGRectGetMaxX(box) + kTitleGap;
    text.size.width = CGRectGetMaxX(frame) - text.origin.x;
    NSDrawLine(context, title(), font(), text, NSLeftTextAlignment, TitleColorOf(*this));
}

void NSButtonCell::drawBezel(NSRect frame, bool focused) const
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const NSRect box = boxRect(frame);
    NSBoxStyle style = BoxStyleOf(*this, false, focused);
    style.radius = boxCornerRadius();
    NSDrawBox(context, box, style);
    if (mBezelStyle == NSHelpButtonBezelStyle)
        NSDrawLine(context, "?"_ns.get(), NSSystemBoldFont(), box, NSCenterTextAlignment,
                   isEnabled() ? secondaryLabelColor : disabledControlTextColor);
    else
        NSDrawLine(context, title(), font(), CGRectInset(box, NSMetrics::textInset, 0), NSCenterTextAlignment,
                   TitleColorOf(*this));
}
