#include "AppKit/NSTextFieldCell.h"

#include "AppKit/NSColor.h"
#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSTextField.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

using enum NSAppearanceColorName;

NS_CLASS_TABLE(NSTextFieldCell, NSCell, "")
NS_CLASS_TABLE_END

bool NSTextFieldCell::initWithCoder(NSCoder& coder)
{
    if (!NSCell::initWithCoder(coder)) return false;
    mPlaceholder = coder.decodeStringForKey("placeholderString");
    mEditable = coder.decodeBoolForKey("editable", false);
    mSelectable = coder.decodeBoolForKey("selectable", false);
    mDrawsBackground = coder.decodeBoolForKey("drawsBackground", false);
    const RetainPtr<NSString> border = coder.decodeStringForKey("borderStyle");
    mBordered = border && border->units() != u"none";
    if (title() && title()->length() > 0) setStringValue(title());
    return true;
}

std::u16string NSTextFieldCell::editingText() const
{
    const RetainPtr<NSObject> value(objectValue());
    RetainPtr<NSString> text;
    if (value && formatter()) text = formatter()->editingStringForObjectValue(value);
    if (!text) text = stringValue();
    return text ? text->units() : std::u16string();
}

NSTextStyle NSTextFieldCell::textStyle() const
{
    NSTextStyle style{font(), nullptr, alignment(), mBordered ? NSMetrics::textInset : 0};
    if (!isEnabled())
        style.color = NSColor::colorNamed(disabledControlTextColor);
    else if (textColor())
        style.color = textColor();
    else
        style.color = NSColor::colorNamed(NSAppearanceColorName::textColor);
    return style;
}

void NSTextFieldCell::drawWithFrame(NSRect frame, NSView& view)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    drawBox(context, frame, view);
    const auto* field = asKind<NSTextField>(&view);
    if (!field || !field->currentEditor()) drawText(context, frame); // else the editor draws it
}

void NSTextFieldCell::drawBox(CGContextRef context, NSRect frame, const NSView& view) const
{
    const auto fill = isEnabled() ? fieldColor : disabledFieldColor;
    if (mBordered) {
        const auto* field = asKind<NSTextField>(&view);
        const auto border = !isEnabled() ? disabledFieldBorderColor : field ? field->borderColor() : fieldBorderColor;
        NSDrawBox(context, frame, {fill, border});
    } else if (mDrawsBackground) {
        CGContextSetFillColorWithColor(context, NSAppearanceColor(fill));
        CGContextFillRect(context, frame);
    }
}

void NSTextFieldCell::drawText(CGContextRef context, NSRect frame) const
{
    NSTextStyle style = textStyle();
    const RetainPtr<NSString> value = stringValue();
    const NSString* text = value.get();
    if ((!text || text->length() == 0) && mPlaceholder) {
        text = mPlaceholder;
        style.color = NSColor::colorNamed(disabledControlTextColor);
    }
    const NSRect area = CGRectInset(frame, style.inset, 0);
    if (!text || !(area.size.width > 0)) return;
    const ScopedGState state(context);
    CGContextClipToRect(context, textRect(frame));
    const auto line = CTLineCreate(CTTruncatedEnd(text->units(), style.font.get(), area.size.width), style.font.get());
    CTLineDraw(line.get(), context, NSTextOrigin(area, line.get(), style.font.get(), style.alignment),
               style.color->CGColorForScale(1).get());
}
