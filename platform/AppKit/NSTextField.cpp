#include "AppKit/NSTextField.h"

#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSTextField, NSControl, "")
    .action("selectText:", &NSTextField::selectText)
NS_CLASS_TABLE_END

bool NSTextField::initWithFrame(NSRect frame)
{
    const bool described = cell() != nullptr;
    if (!NSControl::initWithFrame(frame)) return false;
    NSTextFieldCell* const made = textCell();
    if (described || !made) return true;
    made->setEditable(true);
    made->setBordered(true);
    made->setDrawsBackground(true);
    made->setSendsActionOnEndEditing(true);
    return true;
}

void NSTextField::dealloc()
{
    endEditing();
    NSControl::dealloc();
}

RetainPtr<NSCell> NSTextField::makeCell() const { return make<NSTextFieldCell>(); }
NSTextFieldCell* NSTextField::textCell() const { return asKind<NSTextFieldCell>(cell()); }

// --- what the cell says

bool NSTextField::isEditable() const { return textCell() && textCell()->isEditable(); }
bool NSTextField::isSelectable() const { return textCell() && textCell()->isSelectable(); }
bool NSTextField::isBordered() const { return textCell() && textCell()->isBordered(); }
bool NSTextField::drawsBackground() const { return textCell() && textCell()->drawsBackground(); }
const NSString* NSTextField::placeholderString() const
{
    return textCell() ? textCell()->placeholderString() : nullptr;
}

void NSTextField::setEditable(bool editable)
{
    if (textCell()) textCell()->setEditable(editable);
    if (!editable) dropFocus();
}

void NSTextField::setSelectable(bool selectable)
{
    if (textCell()) textCell()->setSelectable(selectable);
    if (!isSelectable()) dropFocus();
}

void NSTextField::setBordered(bool bordered)
{
    if (textCell()) textCell()->setBordered(bordered);
    setNeedsDisplay();
}

void NSTextField::setDrawsBackground(bool draws)
{
    if (textCell()) textCell()->setDrawsBackground(draws);
    setNeedsDisplay();
}

void NSTextField::setPlaceholderString(const NSString* text)
{
    if (textCell()) textCell()->setPlaceholderString(text);
    setNeedsDisplay();
}

void NSTextField::setAlignment(NSTextAlignment alignment)
{
    if (cell()) cell()->setAlignment(alignment);
    setNeedsDisplay();
}

NSRect NSTextField::opaqueRect() const
{
    if (isBordered()) return CGRectInset(bounds(), NSMetrics::controlCornerRadius, 0);
    return drawsBackground() ? bounds() : NSRect{};
}

NSRect NSTextField::valueRect() const { return textCell() ? textCell()->textRect(bounds()) : bounds(); }

// --- the value

void NSTextField::setObjectValue(NSObject* value)
{
    NSControl::setObjectValue(value);
    valueChanged();
}

void NSTextField::setDoubleValue(double value)
{
    NSControl::setDoubleValue(value);
    valueChanged();
}

void NSTextField::setFloatValue(float value)
{
    NSControl::setFloatValue(value);
    valueChanged();
}

void NSTextField::setIntValue(int value)
{
    NSControl::setIntValue(value);
    valueChanged();
}

void NSTextField::setStringValue(const NSString* value)
{
    NSControl::setStringValue(value);
    valueChanged();
}

void NSTextField::setFormatter(NSFormatter* formatter)
{
    NSControl::setFormatter(formatter);
    abortEditing();
    setNeedsDisplay();
}

void NSTextField::valueChanged()
{
    if (mEditor && !mEditor->isEdited()) showValue();
}

/// The editor begins anew with the value's text, unless that is what stands there untouched.
void NSTextField::showValue()
{
    mTextAtStart = textCell() ? textCell()->editingText() : std::u16string();
    if (mEditor->isEdited() || mEditor->text() != mTextAtStart) mEditor->replaceText(mTextAtStart);
}

// --- looks and the mouse

void NSTextField::setFrame(NSRect frame)
{
    NSControl::setFrame(frame);
    if (mEditor) mEditor->setFrame(bounds());
}

NSAppearanceColorName NSTextField::borderColor() const
{
    using enum NSAppearanceColorName;
    if (mRefused) return errorColor;
    if (mEditor) return controlAccentColor;
    return mHovered && isEditable() ? fieldHoverBorderColor : fieldBorderColor;
}

void NSTextField::mouseEntered(NSEvent&)
{
    mHovered = true;
    setNeedsDisplay();
}

void NSTextField::mouseExited(NSEvent&)
{
    mHovered = false;
    setNeedsDisplay();
}

NSCursorShape NSTextField::cursorAtPoint(NSPoint) const
{
    return acceptsFirstResponder() ? NSCursorShape::text : NSCursorShape::arrow;
}

void NSTextField::mouseDown(NSEvent& event)
{
    const RetainPtr<NSTextField> keep(this);
    const RetainPtr<NSWindow> in(window());
    if (!in || !acceptsFirstResponder()) return NSControl::mouseDown(event);
    if (!mEditor) in->makeFirstResponder(this);
    if (mEditor) mEditor->mouseDown(event);
}
