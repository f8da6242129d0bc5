#include "PosFmtText.h"

#include <cwchar>

namespace PosFmtInner {
namespace {

bool IsTrailer(wchar_t c) { return IsBlank(c) || c == L'%'; }

std::wstring_view Trimmed(std::wstring_view text)
{
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* const begin = SkipBlanks(text.data(), end);
    const wchar_t* last = end;
    while (last != begin && IsTrailer(last[-1])) --last;
    return {begin, last};
}

/// The last decimal character, or the end.
const wchar_t* FindFraction(std::wstring_view text, wchar_t decimal)
{
    const std::size_t index = decimal ? text.rfind(decimal) : std::wstring_view::npos;
    return text.data() + (index == std::wstring_view::npos ? text.size() : index);
}

/// Tenths, hundredths and so on, up to the first character that is no digit.
const wchar_t* ReadFraction(const wchar_t* at, const wchar_t* end, double& value)
{
    for (double part = 10; at != end && IsDigit(*at); ++at, part *= 10) value += (*at - L'0') / part;
    return at;
}

/// Added to a number's magnitude, so that decimal fractions survive a later truncation: 1.001 has one thousandth.
constexpr double kFractionGuard = 0.000000000005;

} // namespace

Number ReadNumber(std::wstring_view text, wchar_t decimal, wchar_t group)
{
    const std::wstring_view number = Trimmed(text);
    const wchar_t* at = number.data();
    const wchar_t* const end = at + number.size();
    if (at == text.data() + text.size()) return {0, {at, PosFmtReason::None}, number};
    const wchar_t* const fraction = FindFraction(number, decimal);
    const bool isNegative = at != end && *at == L'-';
    double value = 0;

    for (at += isNegative; at != end && at != fraction; ++at) {
        if (IsBlank(*at)) break;
        if (*at == group) continue;
        if (!IsDigit(*at)) {
            // Choice: of two decimal separators the second is refused. Test: Metric.RefusesText
            if (*at == decimal) return {value, {fraction, PosFmtReason::SecondSeparator}, number};
            return {value, {at, PosFmtReason::UnexpectedCharacter}, number};
        }
        value = value * 10 + (*at - L'0');
    }
    if (at != end) at = at == fraction ? ReadFraction(at + 1, end, value) : at + 1; // a blank ends the number too

    if (isNegative) value = -value;
    value += value < 0 ? -kFractionGuard : kFractionGuard;
    return {value, {at, at == end ? PosFmtReason::None : PosFmtReason::UnexpectedCharacter}, number};
}

} // namespace PosFmtInner

wchar_t myatof(wchar_t* text, double* value, wchar_t decimalChar, wchar_t groupChar)
{
    *value = 0;
    if (!text) return 0;
    const std::wstring_view all = text;
    const PosFmtInner::Number number = PosFmtInner::ReadNumber(all, decimalChar, groupChar);
    *value = number.value;
    const auto end = static_cast<std::size_t>(number.trimmed.data() + number.trimmed.size() - text);
    std::fill(text + end, text + all.size(), L'\0');
    return number.stop.reason == PosFmtReason::None ? L'\0' : *number.stop.at;
}
