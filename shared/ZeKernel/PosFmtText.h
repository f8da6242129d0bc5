#pragma once

/// Reading and writing that the conversions share: digits, separators, labels, decimal numbers. Nothing here asks for
/// memory but the growth of a text that is written.

#include "PosFmt.h"

#include <array>
#include <cstring>
#include <string_view>

namespace PosFmtInner {

/// What a separator string stands for: its first character, 0 for none.
inline wchar_t FirstOf(const ZeString& separator) { return separator.empty() ? L'\0' : separator[0]; }

inline bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

inline bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

/// The characters that a reader sees: those before a NUL.
inline std::wstring_view Seen(std::wstring_view text) { return text.substr(0, text.find(L'\0')); }

/// Most characters that the parsers with a limit take; longer text is refused.
constexpr std::size_t kMostCharacters = 79;

/// Up to where a text was read, and why no further.
struct Stop {
    const wchar_t* at;
    PosFmtReason reason;
};

/// Fields of a label, or of a time: see AsciiToSMPTE and AsciiToTime. The text has at most kMostCharacters.
Stop ReadLabel(std::wstring_view text, _smpteval* t, unsigned framesPerSecond, wchar_t group);
enum class Minus { Read, Refused };
Stop ReadTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group, Minus minus);

/// Added to a number's magnitude, so that decimal fractions survive a later truncation: 1.001 has one thousandth.
constexpr double kFractionGuard = 0.000000000005;

/// A decimal number: see myatof. `text` has no blanks and percent signs at its end; its fraction, if any, begins at
/// `fraction`.
struct Number {
    double value;
    Stop stop;
};
Number ReadNumber(std::wstring_view text, const wchar_t* fraction, wchar_t decimal, wchar_t group);
Number ReadNumber(std::wstring_view text, wchar_t decimal, wchar_t group);

/// The text without blanks and percent signs at its end.
std::wstring_view Trimmed(std::wstring_view text);

/// Digits from `at` on into `value`, which wraps; skips the grouping character. @return the first other character
template <typename Translate>
const wchar_t* ReadDigits(const wchar_t* at, const wchar_t* end, wchar_t group, Translate translate, unsigned& value)
{
    value = 0;
    for (; at != end; ++at) {
        const auto digit = static_cast<unsigned>(*at - L'0');
        if (digit < 10 && *at != group)
            value = value * 10 + digit;
        else if (!group || (digit < 10 ? *at : translate(*at)) != group)
            break;
    }
    return at;
}

inline const wchar_t* SkipBlanks(const wchar_t* at, const wchar_t* end)
{
    while (at != end && IsBlank(*at)) ++at;
    return at;
}

/// @return false where there are no two digits
inline bool ReadPair(const wchar_t* at, unsigned& value)
{
    const auto tens = static_cast<unsigned>(at[0] - L'0');
    const auto ones = static_cast<unsigned>(at[1] - L'0');
    value = tens * 10 + ones;
    return tens < 10 && ones < 10;
}

/// Hours, minutes and seconds of text that begins as "01:02:03" does: the way in which they are written, and in which
/// they are read most. @return false for any other text, which takes the long way
inline bool ReadWrittenFields(std::wstring_view text, wchar_t group, _smpteval* t)
{
    if (text.size() < 8 || text[2] != L':' || text[5] != L':' || group == L':' || IsDigit(group)) return false;
    return ReadPair(&text[0], t->hours) && ReadPair(&text[3], t->minutes) && ReadPair(&text[6], t->seconds);
}

/// A reading that ended at `stop`.
inline PosFmtReading ReadingOf(const ZeString& text, Stop stop, long long position)
{
    return {stop.reason == PosFmtReason::None, stop.reason, static_cast<std::size_t>(stop.at - text.data()), position};
}

/// Writes the magnitude of `value`, then `suffix`: see FormatFloatPretty. A `group` of 0 doesn't group.
void WriteFloat(ZeString& out, double value, std::size_t decimals, wchar_t decimal, wchar_t group,
                std::wstring_view suffix = {});

/// What is said of a text that was not looked at.
inline PosFmtReading TooLong() { return {false, PosFmtReason::TextTooLong, kMostCharacters, 0}; }

inline PosFmtReading NoConversion() { return {false, PosFmtReason::NoConversion, 0, 0}; }

/// A refused text is position 0 for who can't ask why.
inline long long PositionOf(const PosFmtReading& reading) { return reading.accepted ? reading.position : 0; }

/// "00" to "99".
inline constexpr auto kPairs = [] {
    std::array<std::array<wchar_t, 2>, 100> pairs{};
    for (unsigned i = 0; i < 100; ++i)
        pairs[i] = {static_cast<wchar_t>(L'0' + i / 10), static_cast<wchar_t>(L'0' + i % 10)};
    return pairs;
}();

/// Two digits of a value below 100.
inline void WritePair(wchar_t* at, unsigned value) { std::memcpy(at, kPairs[value].data(), sizeof kPairs[value]); }

/// Digits of a number that is written without leading zeros.
inline unsigned DigitsOf(unsigned value)
{
    if (value < 10) return 1;
    if (value < 100) return 2;
    if (value < 1000) return 3;
    unsigned digits = 4;
    for (value /= 10'000; value != 0; value /= 10) ++digits;
    return digits;
}

/// Digits of a number that is written with two at least.
inline unsigned PaddedDigitsOf(unsigned value) { return value < 100 ? 2 : DigitsOf(value); }

/// Writes over a string from its start; whoever makes it knows the length. The characters go where they stay, since
/// writing them elsewhere first takes twice as long.
class TextWriter {
public:
    TextWriter(ZeString& out, std::size_t length)
    {
        if (out.size() != length) out.resize(length);
        mAt = out.data();
    }

    void skip(std::size_t count) { mAt += count; }
    void character(wchar_t c) { *mAt++ = c; }

    /// The last `digits` digits of a number.
    void number(unsigned value, unsigned digits)
    {
        wchar_t* at = mAt += digits;
        for (; digits >= 2; digits -= 2, value /= 100) WritePair(at -= 2, value % 100);
        if (digits) *--at = static_cast<wchar_t>(L'0' + value % 10);
    }

private:
    wchar_t* mAt;
};

} // namespace PosFmtInner
