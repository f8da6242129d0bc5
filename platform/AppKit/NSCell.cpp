#include "AppKit/NSCell.h"
#include "AppKit/NSAppearance.h"
#include "AppKit/NSColor.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

NS_CLASS_TABLE(NSCell, NSObject, "")
NS_CLASS_TABLE_END

NSCell::NSCell() : mTitle(make<NSString>()) {}
NSCell::~NSCell() = default;

bool NSCell::initWithCoder(NSCoder& coder)
{
    if (const auto title = coder.decodeStringForKey("title")) mTitle = title;
    mEnabled = coder.decodeBoolForKey("enabled", true);
    mContinuous = coder.decodeBoolForKey("continuous", mContinuous);
    mSendsActionOnEndEditing = coder.decodeBoolForKey("sendsActionOnEndEditing", false);
    mAlignment = NSTextAlignmentNamed(coder.decodeStringForKey("alignment").get());
    if (const auto font = coder.decodeObjectForKey("font")) mFont = asKind<CTFont>(font.get());
    if (const auto color = coder.decodeObjectForKey("textColor")) mTextColor = asKind<NSColor>(color.get());
    if (const auto formatter = coder.decodeObjectForKey("formatter")) mFormatter = asKind<NSFormatter>(formatter.get());
    return init();
}

NSTextAlignment NSTextAlignmentNamed(const NSString* name)
{
    static constexpr struct {
        std::u16string_view name;
        NSTextAlignment alignment;
    } kRows[] = {{u"right", NSRightTextAlignment}, {u"center", NSCenterTextAlignment}};
    for (const auto& row : kRows)
        if (name && name->units() == row.name) return row.alignment;
    return NSLeftTextAlignment;
}

// --- the value

void NSCell::setObjectValue(NSObject* value) { mObjectValue = value; }
void NSCell::setDoubleValue(double value) { setObjectValue(NSNumber::numberWithDouble(value).get()); }
void NSCell::setFloatValue(float value) { setObjectValue(NSNumber::numberWithFloat(value).get()); }
void NSCell::setIntValue(int value) { setObjectValue(NSNumber::numberWithInt(value).get()); }

double NSCell::doubleValue() const
{
    const RetainPtr<NSObject> value(objectValue());
    if (const auto* number = asKind<NSNumber>(value.get())) return number->doubleValue();
    if (const auto* text = asKind<NSString>(value.get())) return text->doubleValue();
    return 0;
}

float NSCell::floatValue() const
{
    const RetainPtr<NSObject> value(objectValue());
    const auto* const number = asKind<NSNumber>(value.get());
    return number ? number->floatValue() : NSNumber::numberWithDouble(doubleValue())->floatValue();
}

int NSCell::intValue() const
{
    const RetainPtr<NSObject> value(objectValue());
    if (const auto* number = asKind<NSNumber>(value.get())) return number->intValue();
    if (const auto* text = asKind<NSString>(value.get())) return text->intValue();
    return 0;
}

RetainPtr<NSString> NSCell::stringValue() const
{
    const RetainPtr<NSObject> value(objectValue());
    if (!value) return make<NSString>();
    RetainPtr<NSString> text;
    if (mFormatter) text = mFormatter->stringForObjectValue(value);
    return text ? text : value->description();
}

void NSCell::setStringValue(const NSString* value)
{
    const auto text = NSString::string(value ? value->units() : std::u16string());
    RetainPtr<NSObject> object;
    if (mFormatter && mFormatter->getObjectValue(&object, text, nullptr)) return setObjectValue(object);
    setObjectValue(text);
}

// --- the looks

void NSCell::setTitle(const NSString* title) { mTitle = NSString::string(title ? title->units() : std::u16string()); }
CTFontRef NSCell::font() const { return mFont ? mFont.get() : NSSystemFont(); }
void NSCell::setFont(CTFontRef font) { mFont = font; }
NSColor* NSCell::textColor() const { return mTextColor; }
void NSCell::setTextColor(NSColor* color) { mTextColor = color; }
void NSCell::drawWithFrame(NSRect, NSView&) {}
NSTextView* NSCell::fieldEditorForView(NSView&) { return nullptr; }
