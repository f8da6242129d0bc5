#include "PosFmtNumbers.h"
#include "PosFmtText.h"

#include <algorithm>

namespace PosFmtInner {
namespace {

constexpr float afPow1Over10[] = {1.0f,     0.1f,      0.01f,      0.001f,      0.0001f,
                                  0.00001f, 0.000001f, 0.0000001f, 0.00000001f, 0.000000001f};
constexpr int alPow10[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
constexpr std::size_t kMostDecimals = std::size(alPow10) - 1;

/// Writes digits to the left of `end`, grouped in threes. @return where they begin
wchar_t* WriteGrouped(wchar_t* end, unsigned long long value, wchar_t group)
{
    for (int inGroup = 0;; ++inGroup) {
        if (inGroup == 3 && group) {
            *--end = group;
            inGroup = 0;
        }
        *--end = static_cast<wchar_t>(L'0' + value % 10);
        value /= 10;
        if (value == 0) return end;
    }
}

/// Characters of the above.
std::size_t GroupedLength(unsigned long long value, wchar_t group)
{
    std::size_t digits = 1;
    for (; value >= 10; value /= 10) ++digits;
    return group ? digits + (digits - 1) / 3 : digits;
}

} // namespace

void WriteFloat(ZeString& out, double value, std::size_t decimals, wchar_t decimal, wchar_t group,
                std::wstring_view suffix)
{
    const std::size_t k = decimal ? std::min(decimals, kMostDecimals) : 0;
    const double rounded = std::abs(value) + 0.5 * afPow1Over10[std::min(decimals, kMostDecimals)];
    // Choice: the integer part has 64 bits, and the fraction is what it leaves. Test: FormatFloatPretty.WritesAnyValue
    const long long whole = ZeTruncate(rounded);
    const long long fraction = ZeTruncate((rounded - static_cast<double>(whole)) * alPow10[k]);

    const auto wholePart = static_cast<unsigned long long>(whole);
    const std::size_t length = GroupedLength(wholePart, group);
    TextWriter writer(out, length + (k ? k + 1 : 0) + suffix.size());
    WriteGrouped(out.data() + length, wholePart, group);
    writer.skip(length);
    if (k) {
        writer.character(decimal);
        writer.number(static_cast<unsigned>(std::clamp(fraction, 0LL, alPow10[k] - 1LL)), static_cast<unsigned>(k));
    }
    for (const wchar_t c : suffix) writer.character(c);
}

} // namespace PosFmtInner

using namespace PosFmtInner;

int PrettyNumber(ZeString& number, const ZeString& decimalSep, const ZeString& thousandSep)
{
    const wchar_t decimal = FirstOf(decimalSep);
    const wchar_t group = FirstOf(thousandSep);
    std::wstring_view text = Seen(number);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    if (text.empty()) text = L"0";

    const std::size_t lead = std::min(text.find_first_not_of(L"\t 0"), text.size());
    const std::size_t end = decimal ? std::min(text.find(decimal, lead), text.size()) : text.size();
    const std::size_t firstDigit = lead + (lead < end && text[lead] == L'-');

    wchar_t grouped[kMostCharacters];
    std::size_t count = 0;
    const auto put = [&](wchar_t c) {
        if (count < kMostCharacters)
            grouped[count++] = c; // Choice: longer text is cut. Test: PrettyNumber.GroupsDigits
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (group && i > firstDigit && i < end && (end - i) % 3 == 0) put(group);
        put(text[i]);
    }
    number.assign(grouped, count);
    return static_cast<int>(count);
}

void FormatFloatPretty(ZeString& out, double value, const ZeString& pattern, const ZeString& decimalSep,
                       const ZeString& thousandSep, bool group)
{
    const std::size_t point = pattern.find(L'.');
    const std::size_t decimals = point == ZeString::npos ? 0 : pattern.size() - point - 1;
    WriteFloat(out, value, decimals, FirstOf(decimalSep), group ? FirstOf(thousandSep) : L'\0');
}
