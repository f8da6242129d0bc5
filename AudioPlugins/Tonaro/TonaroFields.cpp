#include "TonaroFields.h"

#include "TonaroNotes.h"
#include "TonaroNumberFormatters.h"
#include "TonaroTexts.h"
#include "ZeTimeTextFormatter.h"

#include <cmath>

NS_CLASS_TABLE(TonaroNumberField, NSTextField, "")
NS_CLASS_TABLE_END

NS_CLASS_TABLE(TonaroLengthField, ZeTimeTextField, "")
NS_CLASS_TABLE_END

namespace {

constexpr const char* kOutOfRange = "%1$@ is out of range; the nearest possible is %2$@.";

std::string textOf(const NSFormatter* formatter, const NSObject* value)
{
    const auto text = formatter ? formatter->stringForObjectValue(value) : nullptr;
    return text ? text->utf8() : std::string();
}

double numberOf(const NSObject* value)
{
    const auto* number = asKind<NSNumber>(value);
    return number ? number->doubleValue() : 0;
}

void append(std::string& lines, const std::string& line)
{
    if (line.empty()) return;
    if (!lines.empty()) lines += '\n';
    lines += line;
}

RetainPtr<const NSString> toolTipOf(const std::string& lines)
{
    return lines.empty() ? RetainPtr<const NSString>() : RetainPtr<const NSString>(NSString::string(lines));
}

} // namespace

// --- what was typed

void TonaroTypedValue::shown(NSObject* value, double tolerance)
{
    const auto isOtherThan = [value, tolerance](const RetainPtr<NSObject>& object) {
        return object && std::abs(numberOf(object.get()) - numberOf(value)) > tolerance; // false for not-a-number
    };
    const RetainPtr<NSObject> typed = std::exchange(mTyped, nullptr);
    if (!typed && mInstead && !isOtherThan(mInstead)) return; // told once more
    const bool isOther = isOtherThan(typed);
    mRefused = isOther ? typed : nullptr;
    mInstead = isOther ? value : nullptr;
}

std::string TonaroTypedValue::reason(const NSFormatter* formatter) const
{
    if (!mRefused) return {};
    return TonaroText(kOutOfRange, {textOf(formatter, mRefused.get()), textOf(formatter, mInstead.get())})->utf8();
}

// --- a number

void TonaroNumberField::setFloatValue(float value)
{
    // the editor rounds what is typed up to a thousandth
    mTyped.shown(NSNumber::numberWithFloat(value).get(), 0.002 + std::abs(double{value}) * 1e-6);
    NSTextField::setFloatValue(value);
}

RetainPtr<const NSString> TonaroNumberField::toolTip() const
{
    std::string lines;
    if (asKind<TonaroFrequencyFormatter>(formatter())) append(lines, NoteFromHz(doubleValue()));
    append(lines, mTyped.reason(formatter()));
    return toolTipOf(lines);
}

// --- the length

void TonaroLengthField::setObjectValue(NSObject* value)
{
    // a 32-bit float of seconds holds so much of the samples
    mTyped.shown(value, 1 + std::abs(numberOf(value)) * 1e-6);
    ZeTimeTextField::setObjectValue(value);
}

RetainPtr<const NSString> TonaroLengthField::toolTip() const
{
    const auto* own = asKind<ZeTimeTextFormatter>(formatter());
    if (!own || !defaultMenu()) return nullptr;
    const auto other = make<ZeTimeTextFormatter>();
    std::string lines = mTyped.reason(own);
    for (const auto& item : defaultMenu()->itemArray()) {
        if (item->tag() == own->format()) continue;
        other->setPosFormatter(own->posFormatter().get());
        other->setFormat(static_cast<int>(item->tag()));
        append(lines, item->title()->utf8() + ": " + textOf(other, objectValue()));
    }
    return toolTipOf(lines);
}
