#include "Foundation/NSString.h"

#include "Foundation/NSClass.h"
#include "Foundation/NSClassicLocale.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <unicode/ustring.h>

NS_CLASS_TABLE(NSString, NSObject, "")
NS_CLASS_TABLE_END

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

template <typename Character> std::int32_t LengthForICU(std::basic_string_view<Character> text)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(text.size(), std::numeric_limits<std::int32_t>::max() / 4));
}

bool IsSpace(char16_t unit) { return unit == ' ' || (unit >= '\t' && unit <= '\r') || unit == 0xA0; }
bool IsDigit(char16_t unit) { return unit >= '0' && unit <= '9'; }

/// The number at the start of the text, in ASCII: sign, digits, '.', digits, exponent; empty when there is none.
std::string LeadingNumber(std::u16string_view text, bool onlyInteger)
{
    std::string number;
    std::size_t at = 0;
    const auto take = [&](auto accepts) {
        if (at == text.size() || !accepts(text[at])) return false;
        number += static_cast<char>(text[at++]);
        return true;
    };
    const auto takeDigits = [&] {
        const std::size_t before = at;
        while (take(IsDigit)) {
        }
        return at > before;
    };
    while (at < text.size() && IsSpace(text[at])) ++at;
    const auto isSign = [](char16_t unit) { return unit == '-' || unit == '+'; };
    if (at < text.size() && text[at] == '+')
        ++at;
    else
        take([](char16_t unit) { return unit == '-'; });
    bool any = takeDigits();
    if (onlyInteger) return any ? number : std::string();
    if (take([](char16_t unit) { return unit == '.'; })) any = takeDigits() || any;
    if (!any) return {};
    const std::size_t mantissa = number.size();
    if (take([](char16_t unit) { return unit == 'e' || unit == 'E'; })) {
        take(isSign);
        if (!takeDigits()) number.resize(mantissa);
    }
    return number;
}

std::string AsciiOf(const std::u16string& units)
{
    if (std::any_of(units.begin(), units.end(), [](char16_t unit) { return unit > 0x7F; })) return {};
    return std::string(units.begin(), units.end()) + '\0';
}

/// The code point at `at`, which moves behind it; a lone surrogate stands for itself.
char32_t NextPoint(std::u16string_view text, std::size_t& at)
{
    const char16_t unit = text[at++];
    const bool leads = (unit & 0xFC00) == 0xD800 && at < text.size() && (text[at] & 0xFC00) == 0xDC00;
    if (!leads) return unit;
    const char32_t high = unit & 0x3FFu, low = text[at++] & 0x3FFu;
    return 0x10000 + (high << 10) + low;
}

bool HasLoneSurrogate(const std::u16string& units)
{
    for (std::size_t at = 0; at < units.size();)
        if ((NextPoint(units, at) & ~0x7FFu) == 0xD800) return true;
    return false;
}

std::string UTF32Of(const std::u16string& units)
{
    std::string bytes;
    const auto append = [&bytes](std::uint32_t element) {
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(element >> shift & 0xFF);
    };
    for (std::size_t at = 0; at < units.size();) append(NextPoint(units, at));
    append(0);
    return bytes;
}

} // namespace

std::string NSUTF8FromUTF16(std::u16string_view units)
{
    const std::int32_t length = LengthForICU(units);
    std::string utf8(static_cast<std::size_t>(length) * 3, '\0');
    std::int32_t written = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8WithSub(utf8.data(), static_cast<std::int32_t>(utf8.size()), &written, units.data(), length,
                       kReplacement, nullptr, &error);
    utf8.resize(U_FAILURE(error) ? 0 : static_cast<std::size_t>(written));
    return utf8;
}

std::u16string NSUTF16FromUTF8(std::string_view utf8)
{
    const std::int32_t length = LengthForICU(utf8);
    std::u16string units(static_cast<std::size_t>(length), u'\0');
    std::int32_t written = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units.data(), length, &written, utf8.data(), length, kReplacement, nullptr, &error);
    units.resize(U_FAILURE(error) ? 0 : static_cast<std::size_t>(written));
    return units;
}

RetainPtr<NSString> NSString::string(std::string_view utf8) { return string(NSUTF16FromUTF8(utf8)); }

RetainPtr<NSString> NSString::string(std::u16string units)
{
    auto string = RetainPtr<NSString>::adopt(new NSString);
    string->mUnits = std::move(units);
    return string;
}

RetainPtr<NSString> NSString::stringWithFormat(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = NSFormatClassic(format, arguments);
    va_end(arguments);
    return string(text);
}

bool NSString::initWithCharacters(const unichar* characters, std::size_t length)
{
    if (length > 0) mUnits.assign(characters, length);
    return init();
}

std::string NSString::utf8() const { return NSUTF8FromUTF16(mUnits); }

std::string NSString::cStringUsingEncoding(NSStringEncoding encoding) const
{
    switch (encoding) {
    case NSASCIIStringEncoding:
        return AsciiOf(mUnits);
    case NSUTF8StringEncoding:
        return HasLoneSurrogate(mUnits) ? std::string() : utf8() + '\0';
    case NSUTF32LittleEndianStringEncoding:
        return UTF32Of(mUnits);
    }
    return {};
}

bool NSString::isEqualToString(const NSString* other) const { return other && mUnits == other->mUnits; }

bool NSString::hasPrefix(const NSString* prefix) const { return prefix && mUnits.starts_with(prefix->mUnits); }

double NSString::doubleValue() const
{
    return strtod_l(LeadingNumber(mUnits, false).c_str(), nullptr, NSClassicLocale());
}

std::int32_t NSString::intValue() const
{
    const long long value = std::strtoll(LeadingNumber(mUnits, true).c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long long>(value, std::numeric_limits<std::int32_t>::min(),
                                                           std::numeric_limits<std::int32_t>::max()));
}

bool NSString::isEqual(const NSObject* other) const { return isEqualToString(asKind<NSString>(other)); }

std::size_t NSString::hash() const { return std::hash<std::u16string>()(mUnits); }

RetainPtr<NSString> NSString::description() const { return const_cast<NSString*>(this); }

RetainPtr<NSString> operator""_ns(const char* utf8, std::size_t length) { return NSString::string({utf8, length}); }
