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
inline std::wstring_view Seen(const ZeString& text) { return {text.data(), std::wcslen(text.c_str())}; }

/// Most characters that the parsers with a limit take; longer text is refused.
constexpr std::size_t kMostCharacters = 79;

/// Up to where a text was read, and why no further.
struct Stop {
    const wchar_t* at;
    PosFmtReason reason;
};

/// Fields of a label, or of a time: see AsciiToSMPTE and AsciiToTime. The text has at most kMostCharacters.
Stop ReadLabel(std::wstring_view text, _smpteval* t, unsigned framesPerSecond, wchar_t group);
Stop ReadTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group);

/// A decimal number: see myatof.
struct Number {
    double value;
    Stop stop;
    std::wstring_view trimmed; ///< the text without blanks and percent signs around it
};
Number ReadNumber(std::wstring_view text, wchar_t decimal, wchar_t group);

/// Digits from `at` on into `value`, which wraps; skips the grouping character. @return the first other character
template <typename CharacterAt>
const wchar_t* ReadDigits(const wchar_t* at, const wchar_t* end, wchar_t group, CharacterAt character, unsigned& value)
{
    value = 0;
    for (; at != end; ++at) {
        const wchar_t c = character(at);
        if (c == group) continue;
        if (!IsDigit(c)) break;
        value = value * 10 + static_cast<unsigned>(c - L'0');
    }
    return at;
}

inline const wchar_t* SkipBlanks(const wchar_t* at, const wchar_t* end)
{
    while (at != end && IsBlank(*at)) ++at;
    return at;
}

/// A reading that ended at `stop`.
inline PosFmtReading ReadingOf(const ZeString& text, Stop stop, long long position)
{
    return {stop.reason == PosFmtReason::None, stop.reason, static_cast<std::size_t>(stop.at - text.data()), position};
}

/// Writes the magnitude of `value`: see FormatFloatPretty. A `group` of 0 doesn't group. At most 37 characters.
class TextWriter;
void WriteFloat(TextWriter& writer, double value, std::size_t decimals, wchar_t decimal, wchar_t group);

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

/// Text under construction, at most 79 characters.
class TextWriter {
public:
    void character(wchar_t c) { *mEnd++ = c; }

    /// A number with at least `width` digits.
    void number(unsigned value, unsigned width)
    {
        if (width == 2 && value < 100) {
            WritePair(mEnd, value);
            mEnd += 2;
            return;
        }
        unsigned digits = 1;
        for (unsigned rest = value; rest >= 10; rest /= 10) ++digits;
        wchar_t* const end = mEnd += digits < width ? width : digits;
        for (wchar_t* at = end; width > 0 || value != 0; value /= 10, width -= width > 0)
            *--at = static_cast<wchar_t>(L'0' + value % 10);
    }

    void text(std::wstring_view characters) { mEnd += characters.copy(mEnd, characters.size()); }

    void assignTo(ZeString& out) const { out.assign(mCharacters, static_cast<std::size_t>(mEnd - mCharacters)); }

private:
    wchar_t mCharacters[kMostCharacters + 1];
    wchar_t* mEnd = mCharacters;
};

} // namespace PosFmtInner
