#include "PosFmtNumbers.h"
#include "PosFmtText.h"

#include <algorithm>

namespace PosFmtInner {
namespace {

constexpr float afPow1Over10[] = {1.0f,     0.1f,      0.01f,      0.001f,      0.0001f,
                                  0.00001f, 0.000001f, 0.0000001f, 0.00000001f, 0.000000001f};
constexpr int alPow10[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
constexpr std::size_t kMostDecimals = std::size(alPow10) - 1;

/// Writes digits from the right, grouped in threes.
void WriteGrouped(TextWriter& writer, unsigned long long value, wchar_t group)
{
    wchar_t digits[32];
    wchar_t* const end = std::end(digits);
    wchar_t* at = end;
    for (int inGroup = 0; at == end || value != 0; value /= 10, ++inGroup) {
        if (inGroup == 3 && group) {
            *--at = group;
            inGroup = 0;
        }
        *--at = static_cast<wchar_t>(L'0' + value % 10);
    }
    writer.text({at, end});
}

} // namespace

void WriteFloat(TextWriter& writer, double value, std::size_t decimals, wchar_t decimal, wchar_t group)
{
    const std::size_t k = std::min(decimals, kMostDecimals);
    const double rounded = std::abs(value) + 0.5 * afPow1Over10[k];
    // Choice: the integer part has 64 bits, and the fraction is what it leaves. Test: FormatFloatPretty.WritesAnyValue
    const long long whole = ZeTruncate(rounded);
    WriteGrouped(writer, static_cast<unsigned long long>(whole), group);
    if (k == 0 || !decimal) return;
    const long long fraction = ZeTruncate((rounded - static_cast<double>(whole)) * alPow10[k]);
    writer.character(decimal);
    writer.number(static_cast<unsigned>(std::clamp(fraction, 0LL, alPow10[k] - 1LL)), static_cast<unsigned>(k));
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
    TextWriter writer;
    WriteFloat(writer, value, decimals, FirstOf(decimalSep), group ? FirstOf(thousandSep) : L'\0');
    writer.assignTo(out);
}
