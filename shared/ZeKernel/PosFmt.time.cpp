#include "PosFmtNumbers.h"
#include "PosFmtText.h"
#include "ZePrint.h"

using namespace PosFmtInner;

namespace {

constexpr double kMilliseconds = 1000.0;
constexpr unsigned kCdFrames = 75;

/// How the formats of hours to sub-seconds differ.
struct SubSecond {
    double perSecond; // units; 0 stands for the object's frame rate
    unsigned digits;
    wchar_t separator;    // 0 stands for the user's decimal separator
    bool isAlwaysWritten; // whole units asked for or not
};

constexpr SubSecond kTime = {kMilliseconds, 3, L'\0', false};
constexpr SubSecond kCdTime = {kCdFrames, 2, L':', false};
constexpr SubSecond kFrames = {0, 2, L'\0', true};

const SubSecond* SubSecondOf(const ZePosFmt& fmt)
{
    switch (fmt.eFormat) {
    case QVPOSFMT_TIME:
        return &kTime;
    case QVPOSFMT_TIME_CD:
        return &kCdTime;
    case QVPOSFMT_FRAMES:
        return &kFrames;
    default:
        return nullptr;
    }
}

double UnitsPerSecond(const SubSecond& sub, const ZePosFmt& fmt)
{
    return sub.perSecond != 0 ? sub.perSecond : fmt.dFrameRate;
}

/// Takes the whole multiples of `units * seconds` out of `rest`.
unsigned TakeOut(double& rest, double units, double seconds)
{
    const double divisor = units * seconds;
    if (divisor == 0 || std::abs(rest) < divisor) return 0;
    const unsigned count = Truncated32(rest / divisor);
    rest -= count * units * seconds;
    return count;
}

/// Colons, decimal separators and their order. What is wrong in them is told before anything is read.
Stop CheckSeparators(std::wstring_view text, wchar_t decimal)
{
    int colons = 0;
    bool hasDecimal = false;
    for (const wchar_t& c : text) {
        if (c == L':' && hasDecimal) return {&c, PosFmtReason::FieldAfterFraction};
        if (c == L':' && ++colons == 3) return {&c, PosFmtReason::TooManyFields};
        if (c != decimal) continue;
        if (hasDecimal) return {&c, PosFmtReason::SecondSeparator};
        hasDecimal = true;
    }
    return {text.data() + text.size(), PosFmtReason::None};
}

/// Time without a sign: the fields could not hold one.
Stop ReadUnsignedTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group)
{
    // Choice: a minus anywhere but in front is refused. Test: SMPTELike.ReadsWithAReason
    const std::wstring_view before = text.substr(0, text.find(L'-'));
    const Stop stop = ReadTime(before, t, decimal, group);
    if (before.size() == text.size() || stop.reason != PosFmtReason::None) return stop;
    return {before.data() + before.size(), PosFmtReason::UnexpectedCharacter};
}

Stop ReadUnsigned(std::wstring_view text, const ZePosFmt& fmt, _smpteval* t, wchar_t decimal, wchar_t group)
{
    switch (fmt.eFormat) {
    case QVPOSFMT_TIME:
        return ReadUnsignedTime(text, t, decimal, group);
    case QVPOSFMT_TIME_CD:
        return ReadLabel(text, t, kCdFrames, group);
    default: {
        Stop stop = ReadLabel(text, t, 0, group);
        if (stop.reason == PosFmtReason::UnexpectedCharacter && *stop.at == decimal)
            stop.reason = PosFmtReason::SeparatorNotRead;
        return stop;
    }
    }
}

} // namespace

Stop PosFmtInner::ReadTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group)
{
    *t = {t->type, 0, 0, 0, 0};
    const Stop check = CheckSeparators(text, decimal);
    if (check.reason != PosFmtReason::None) return check;
    const wchar_t* const end = check.at;
    for (const wchar_t* at = text.data();;) {
        const Number number = ReadNumber({at, end}, decimal, group);
        const unsigned seconds = Truncated32(number.value);
        *t = {t->type, t->minutes, t->seconds, seconds, Truncated32((number.value - seconds) * kMilliseconds)};
        if (number.stop.reason == PosFmtReason::None) return {end, PosFmtReason::None};
        if (*number.stop.at != L':') return number.stop;
        at = number.stop.at + 1;
    }
}

bool AsciiToTime(const ZeString& text, _smpteval* t, const ZeString& decimalSep, const ZeString& thousandSep)
{
    *t = {t->type, 0, 0, 0, 0};
    if (text.size() > kMostCharacters) return false;
    return ReadTime(Seen(text), t, FirstOf(decimalSep), FirstOf(thousandSep)).reason == PosFmtReason::None;
}

void FormatSmpteLikePosition(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                             unsigned wholeUnits)
{
    const SubSecond* sub = SubSecondOf(fmt);
    if (!sub) return;
    const double units = UnitsPerSecond(*sub, fmt);
    double rest = Magnitude(position) * units / fmt.dwSampleRate;
    const wchar_t separator = sub->separator ? sub->separator : FirstOf(decimalSep);

    TextWriter writer;
    if (position < 0) writer.character(L'-');
    writer.number(TakeOut(rest, units, 3600), 2);
    writer.character(L':');
    writer.number(TakeOut(rest, units, 60), 2);
    writer.character(L':');
    writer.number(TakeOut(rest, units, 1), 2);
    // Choice: without a separator the text ends here, as decimal numbers do. Test: SMPTELike.WritesPositions
    if (separator && (sub->isAlwaysWritten || !wholeUnits)) {
        writer.character(separator);
        writer.number(static_cast<unsigned>(WholeUnit(rest)), sub->digits);
    }
    writer.assignTo(out);
}

void SMPTELike_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                        unsigned flags)
{
    FormatSmpteLikePosition(out, fmt, position, decimalSep, flags & kPosFmtWholeUnits);
}

long long SmpteLikeToPosition(unsigned sampleRate, double unitsPerSecond, const _smpteval* t)
{
    const unsigned long long seconds = 3600ull * t->hours + 60ull * t->minutes + t->seconds;
    const double units = t->frames + static_cast<double>(seconds) * unitsPerSecond;
    return ZeTruncate(sampleRate * units / unitsPerSecond + kFirstSample);
}

PosFmtReading SMPTELike_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned)
{
    const SubSecond* sub = SubSecondOf(fmt);
    if (!sub) return NoConversion();
    if (text.size() > kMostCharacters) return TooLong();

    std::wstring_view rest = Seen(text);
    const wchar_t* const end = rest.data() + rest.size();
    const wchar_t* const first = SkipBlanks(rest.data(), end);
    const bool isNegative = first != end && *first == L'-';
    if (isNegative) rest = {first + 1, end};

    _smpteval t{};
    const Stop stop = ReadUnsigned(rest, fmt, &t, FirstOf(decimalSep), FirstOf(thousandSep));
    const long long position = SmpteLikeToPosition(fmt.dwSampleRate, UnitsPerSecond(*sub, fmt), &t);
    const auto negated = static_cast<long long>(0 - static_cast<unsigned long long>(position));
    return ReadingOf(text, stop, isNegative ? negated : position);
}

long long SMPTELike_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags)
{
    return PositionOf(SMPTELike_Read(text, fmt, decimalSep, thousandSep, flags));
}
