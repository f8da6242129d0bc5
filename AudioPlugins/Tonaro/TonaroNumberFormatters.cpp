#include "TonaroNumberFormatters.h"

#include "TonaroNotes.h"
#include "TonaroTexts.h"

#include <cmath>
#include <limits>

NS_CLASS_TABLE(TonaroFrequencyFormatter, NSNumberFormatter, "")
NS_CLASS_TABLE_END

NS_CLASS_TABLE(TonaroGainFormatter, NSNumberFormatter, "")
NS_CLASS_TABLE_END

namespace {

constexpr const char* kNoFrequency = "“%1$@” is no frequency. Try 440, 1.5k or A4.";
constexpr const char* kNoGain = "“%1$@” is no gain. Try -6, -inf or 0.5x.";
constexpr std::size_t kLongestQuote = 40; // units of the text that the sentence repeats

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\u00A0' || unit == u'\u202F' || unit == u'\u2009'; }

std::u16string_view trimmed(std::u16string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// Takes a unit off the end, in capitals or not, with the blanks before it.
bool takeUnit(std::u16string_view& text, std::u16string_view lowerCaseUnit)
{
    if (text.size() < lowerCaseUnit.size()) return false;
    const std::u16string_view end = text.substr(text.size() - lowerCaseUnit.size());
    for (std::size_t i = 0; i < end.size(); ++i) {
        const char16_t lower = end[i] >= u'A' && end[i] <= u'Z' ? static_cast<char16_t>(end[i] + 0x20) : end[i];
        if (lower != lowerCaseUnit[i]) return false;
    }
    text = trimmed(text.substr(0, text.size() - lowerCaseUnit.size()));
    return true;
}

/// The number alone, a minus sign of typographers made a plain one; not-a-number where there is none.
double numberIn(const NSNumberFormatter& formatter, std::u16string_view text)
{
    std::u16string plain(text);
    if (!plain.empty() && plain.front() == u'\u2212') plain.front() = u'-';
    const auto number = formatter.numberFromString(NSString::string(std::move(plain)).get());
    return number ? number->doubleValue() : std::numeric_limits<double>::quiet_NaN();
}

std::u16string_view unitsOf(const NSString* text) { return text ? trimmed(text->units()) : std::u16string_view(); }

bool answer(double value, RetainPtr<NSObject>* object)
{
    if (object) *object = NSNumber::numberWithDouble(value);
    return true;
}

bool refuse(const char* key, std::u16string_view text, RetainPtr<NSString>* error)
{
    if (!error) return false;
    std::u16string quote(text.substr(0, kLongestQuote));
    if (quote.size() < text.size()) {
        if ((quote.back() & 0xFC00) == 0xD800) quote.pop_back(); // half of a pair
        quote += u'…';
    }
    *error = TonaroText(key, {NSString::string(std::move(quote))->utf8()});
    return false;
}

/// Empty text stands for no value, which puts the old one back.
bool answerNothing(RetainPtr<NSObject>* object)
{
    if (object) *object = nullptr;
    return true;
}

} // namespace

bool TonaroFrequencyFormatter::getObjectValue(RetainPtr<NSObject>* object, const NSString* text,
                                              RetainPtr<NSString>* error) const
{
    const std::u16string_view whole = unitsOf(text);
    if (whole.empty()) return answerNothing(object);
    if (const auto hz = HzFromNote(whole)) return answer(*hz, object);
    std::u16string_view digits = whole;
    takeUnit(digits, u"hz");
    const double factor = takeUnit(digits, u"k") ? 1000.0 : 1.0;
    const double hz = numberIn(*this, digits) * factor;
    return std::isfinite(hz) ? answer(hz, object) : refuse(kNoFrequency, whole, error);
}

bool TonaroGainFormatter::getObjectValue(RetainPtr<NSObject>* object, const NSString* text,
                                         RetainPtr<NSString>* error) const
{
    const std::u16string_view whole = unitsOf(text);
    if (whole.empty()) return answerNothing(object);
    std::u16string_view digits = whole;
    if (takeUnit(digits, u"x") || takeUnit(digits, u"×")) {
        const double ratio = numberIn(*this, digits);
        return ratio >= 0.0 && std::isfinite(ratio) ? answer(20.0 * std::log10(ratio), object)
                                                    : refuse(kNoGain, whole, error);
    }
    takeUnit(digits, u"db");
    for (const std::u16string_view endless : {u"-inf", u"-∞"})
        if (std::u16string_view rest = digits; takeUnit(rest, endless) && rest.empty())
            return answer(-std::numeric_limits<double>::infinity(), object);
    const double decibels = numberIn(*this, digits);
    return std::isnan(decibels) ? refuse(kNoGain, whole, error) : answer(decibels, object);
}
