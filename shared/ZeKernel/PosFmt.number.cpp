#include "PosFmtText.h"

#include <algorithm>
#include <cwchar>

namespace PosFmtInner {
namespace {

bool IsTrailer(wchar_t c) { return IsBlank(c) || c == L'%'; }

/// The last decimal character, or the end.
const wchar_t* FindFraction(std::wstring_view text, wchar_t decimal)
{
    const std::size_t index = decimal ? text.rfind(decimal) : std::wstring_view::npos;
    return text.data() + (index == std::wstring_view::npos ? text.size() : index);
}

/// Digits up to `end` or the first other character; `group` is skipped. Doubles hold any number of them, but integers
/// are faster as long as they hold them too.
template <typename Value> const wchar_t* GatherDigits(const wchar_t* at, const wchar_t* end, wchar_t group, double& sum)
{
    Value value = 0;
    for (; at != end; ++at) {
        if (*at == group) continue;
        const auto digit = static_cast<unsigned>(*at - L'0');
        if (digit > 9) break;
        value = value * 10 + digit;
    }
    sum = static_cast<double>(value);
    return at;
}

const wchar_t* GatherDigits(const wchar_t* at, const wchar_t* end, wchar_t group, double& sum)
{
    constexpr int kExactDigits = 15;
    return end - at <= kExactDigits ? GatherDigits<long long>(at, end, group, sum)
                                    : GatherDigits<double>(at, end, group, sum);
}

/// Tenths, hundredths and so on, up to the first character that is no digit.
const wchar_t* ReadFraction(const wchar_t* at, const wchar_t* end, double& value)
{
    double digits = 0;
    const wchar_t* const stop = GatherDigits(at, end, L'\0', digits);
    double divisor = 1;
    for (; at != stop; ++at) divisor *= 10;
    value += digits / divisor;
    return stop;
}

/// Text that holds nothing but digits, grouping, one decimal character and trailing blanks, as it is written and read
/// most. @return false for any other text, which takes the long way
bool ReadWrittenNumber(std::wstring_view text, wchar_t decimal, wchar_t group, double& value)
{
    constexpr std::size_t kExactCharacters = 15;
    if (text.empty() || text.size() > kExactCharacters || text[0] == L'-') return false;
    if (IsDigit(group) || IsDigit(decimal)) return false;
    const wchar_t* at = text.data();
    const wchar_t* const end = at + text.size();
    long long whole = 0;
    for (; at != end; ++at) {
        if (const auto digit = static_cast<unsigned>(*at - L'0'); digit < 10)
            whole = whole * 10 + digit;
        else if (*at != group || *at == decimal || IsTrailer(*at) || *at == L'\0')
            break;
    }
    value = static_cast<double>(whole);
    if (at != end && *at == decimal && !IsTrailer(decimal)) {
        long long fraction = 0, divisor = 1;
        for (unsigned digit = 0; ++at != end && (digit = static_cast<unsigned>(*at - L'0')) < 10; divisor *= 10)
            fraction = fraction * 10 + digit;
        value += static_cast<double>(fraction) / static_cast<double>(divisor);
    }
    if (at == text.data()) return false;
    while (at != end && IsTrailer(*at)) ++at;
    return at == end;
}

} // namespace

std::wstring_view Trimmed(std::wstring_view text)
{
    while (!text.empty() && IsTrailer(text.back())) text.remove_suffix(1);
    return text;
}

Number ReadNumber(std::wstring_view text, const wchar_t* fraction, wchar_t decimal, wchar_t group)
{
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* at = SkipBlanks(text.data(), end);
    if (at == end) return {0, {at, PosFmtReason::None}};
    const bool isNegative = *at == L'-';
    double value = 0;
    at += isNegative;
    if (fraction < at || fraction > end) fraction = end; // a blank or a minus, which is read as such
    at = GatherDigits(at, fraction, IsBlank(group) ? L'\0' : group, value);
    if (at == fraction && at != end) {
        at = ReadFraction(at + 1, end, value);
    } else if (at != end && IsBlank(*at)) {
        ++at; // ends the number too
    } else if (at != end) {
        // Choice: of two decimal separators the second is refused. Test: PosFmt.ReadsWithAReason
        if (*at == decimal) return {value, {fraction, PosFmtReason::SecondSeparator}};
        return {value, {at, PosFmtReason::UnexpectedCharacter}};
    }

    if (isNegative) value = -value;
    value += value < 0 ? -kFractionGuard : kFractionGuard;
    return {value, {at, at == end ? PosFmtReason::None : PosFmtReason::UnexpectedCharacter}};
}

/// Any text, the long way. A call of its own, so that the short way needs no registers saved.
[[gnu::noinline]] static Number ReadOddNumber(std::wstring_view text, wchar_t decimal, wchar_t group)
{
    text = Seen(text);
    const std::wstring_view number = Trimmed(text);
    const wchar_t* const end = text.data() + text.size();
    if (number.empty() && SkipBlanks(text.data(), end) != end) return {kFractionGuard, {end, PosFmtReason::None}};
    Number read = ReadNumber(number, FindFraction(number, decimal), decimal, group);
    if (read.stop.reason == PosFmtReason::None) read.stop.at = end;
    return read;
}

Number ReadNumber(std::wstring_view text, wchar_t decimal, wchar_t group)
{
    double value = 0;
    if (ReadWrittenNumber(text, decimal, group, value))
        return {value + kFractionGuard, {text.data() + text.size(), PosFmtReason::None}};
    return ReadOddNumber(text, decimal, group);
}

} // namespace PosFmtInner

wchar_t myatof(wchar_t* text, double* value, wchar_t decimalChar, wchar_t groupChar)
{
    *value = 0;
    if (!text) return 0;
    const std::wstring_view all = text;
    const PosFmtInner::Number read = PosFmtInner::ReadNumber(all, decimalChar, groupChar);
    *value = read.value;
    const wchar_t stop = read.stop.reason == PosFmtReason::None ? L'\0' : *read.stop.at;
    // Text of nothing but blanks stays as it is.
    const std::size_t kept = all.find_first_not_of(L" \t") == all.npos ? all.size() : PosFmtInner::Trimmed(all).size();
    std::fill(text + kept, text + all.size(), L'\0');
    return stop;
}
