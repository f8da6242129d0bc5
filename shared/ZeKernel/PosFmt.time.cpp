#include "PosFmtNumbers.h"
#include "PosFmtText.h"
#include "ZePrint.h"

#include <algorithm>
#include <utility>

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

/// A position's fields; `frames` are sub-second units, hours don't wrap.
struct Fields {
    unsigned hours, minutes, seconds, frames;
};

/// Takes the whole multiples of `units * seconds` out of `rest`.
unsigned TakeOut(double& rest, double units, double seconds)
{
    const double divisor = units * seconds;
    if (divisor == 0) return 0;
    const unsigned count = Truncated32(rest / divisor);
    rest -= count * units * seconds;
    return count;
}

Fields FieldsOf(double units, double perSecond)
{
    // Where a second has a whole number of units, no quotient of doubles below 2^32 can round up to a whole number and
    // no remainder is rounded: integers give the same fields for a quarter of the time.
    const auto wholePerSecond = static_cast<unsigned>(perSecond >= 1 && perSecond < 0x1p16 ? perSecond : 0);
    if (wholePerSecond != 0 && wholePerSecond == perSecond && units < 0x1p32) {
        const auto whole = static_cast<unsigned>(units);
        const unsigned seconds = whole / wholePerSecond;
        const double rest = units - seconds * wholePerSecond;
        return {seconds / 3600, seconds / 60 % 60, seconds % 60, static_cast<unsigned>(WholeUnit(rest))};
    }
    Fields fields{};
    fields.hours = TakeOut(units, perSecond, 3600);
    fields.minutes = TakeOut(units, perSecond, 60);
    fields.seconds = TakeOut(units, perSecond, 1);
    fields.frames = static_cast<unsigned>(WholeUnit(units));
    return fields;
}

/// Colons, decimal separators and their order: what is wrong in them is told before anything is read.
/// @param fraction  receives the decimal separator, or the text's end
Stop CheckSeparators(std::wstring_view text, wchar_t decimal, const wchar_t*& fraction)
{
    const wchar_t* const end = text.data() + text.size();
    fraction = end;
    int colons = 0;
    for (const wchar_t& c : text) {
        if (c == L':' && fraction != end) return {&c, PosFmtReason::FieldAfterFraction};
        if (c == L':' && ++colons == 3) return {&c, PosFmtReason::TooManyFields};
        if (c != decimal) continue;
        if (fraction != end) return {&c, PosFmtReason::SecondSeparator};
        fraction = &c;
    }
    return {end, PosFmtReason::None};
}

/// Reads text of the form "01:02:03.040".
bool IsWrittenTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group)
{
    if (text.size() != 12 || text[8] != decimal || decimal == L':' || IsDigit(decimal) || !IsDigit(text[11]))
        return false;
    if (!ReadWrittenFields(text, group, t) || !ReadPair(&text[9], t->frames)) return false;
    t->frames = t->frames * 10 + static_cast<unsigned>(text[11] - L'0');
    return true;
}

Stop ReadUnsigned(std::wstring_view text, const ZePosFmt& fmt, _smpteval* t, wchar_t decimal, wchar_t group)
{
    switch (fmt.eFormat) {
    case QVPOSFMT_TIME:
        // Choice: a minus anywhere but in front is refused. Test: PosFmt.ReadsWithAReason
        return ReadTime(text, t, decimal, group, Minus::Refused);
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

Stop PosFmtInner::ReadTime(std::wstring_view text, _smpteval* t, wchar_t decimal, wchar_t group, Minus minus)
{
    if (IsWrittenTime(text, t, decimal, group)) return {text.data() + text.size(), PosFmtReason::None};
    *t = {t->type, 0, 0, 0, 0};
    text = Seen(text);
    const wchar_t* fraction = nullptr;
    const Stop check = CheckSeparators(text, decimal, fraction);
    if (check.reason != PosFmtReason::None) return check;

    unsigned hours = 0, minutes = 0, seconds = 0;
    const std::wstring_view trimmed = Trimmed(text);
    const wchar_t* const end = trimmed.data() + trimmed.size();
    for (const wchar_t* at = trimmed.data();; ++at) {
        at = SkipBlanks(at, end);
        const bool isRefused = minus == Minus::Refused && at != end && *at == L'-';
        const Number number = isRefused ? Number{0, {at, PosFmtReason::UnexpectedCharacter}}
                                        : ReadNumber({at, end}, fraction, decimal, group);
        hours = std::exchange(minutes, std::exchange(seconds, Truncated32(number.value)));
        const bool isLast = number.stop.reason == PosFmtReason::None;
        at = number.stop.at;
        if (!isLast && *at == L':') continue;
        *t = {t->type, hours, minutes, seconds, Truncated32((number.value - seconds) * kMilliseconds)};
        return isLast ? check : number.stop;
    }
}

bool AsciiToTime(const ZeString& text, _smpteval* t, const ZeString& decimalSep, const ZeString& thousandSep)
{
    *t = {t->type, 0, 0, 0, 0};
    if (text.size() > kMostCharacters) return false;
    const Stop stop = ReadTime(text, t, FirstOf(decimalSep), FirstOf(thousandSep), Minus::Read);
    return stop.reason == PosFmtReason::None;
}

void FormatSmpteLikePosition(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                             unsigned wholeUnits)
{
    const SubSecond* sub = SubSecondOf(fmt);
    if (!sub) return;
    const double perSecond = UnitsPerSecond(*sub, fmt);
    const Fields fields = FieldsOf(Magnitude(position) * perSecond / fmt.dwSampleRate, perSecond);
    // Choice: without a separator the text ends after the seconds. Test: PosFmt.WritesTheFirstCharacterOfASeparator
    const wchar_t separator = sub->separator ? sub->separator : FirstOf(decimalSep);
    const bool hasFrames = separator && (sub->isAlwaysWritten || !wholeUnits);

    const unsigned hourDigits = PaddedDigitsOf(fields.hours);
    const unsigned minuteDigits = PaddedDigitsOf(fields.minutes);
    const unsigned secondDigits = PaddedDigitsOf(fields.seconds);
    const unsigned frameDigits = std::max(DigitsOf(fields.frames), sub->digits);
    TextWriter writer(out, (position < 0) + hourDigits + 1 + minuteDigits + 1 + secondDigits +
                               (hasFrames ? 1 + frameDigits : 0));
    if (position < 0) writer.character(L'-');
    writer.number(fields.hours, hourDigits);
    writer.character(L':');
    writer.number(fields.minutes, minuteDigits);
    writer.character(L':');
    writer.number(fields.seconds, secondDigits);
    if (!hasFrames) return;
    writer.character(separator);
    writer.number(fields.frames, frameDigits);
}

void SMPTELike_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                        unsigned flags)
{
    FormatSmpteLikePosition(out, fmt, position, decimalSep, flags & kPosFmtWholeUnits);
}

long long SmpteLikeToPosition(unsigned sampleRate, double unitsPerSecond, const _smpteval* t)
{
    const long long seconds = 3600LL * t->hours + 60LL * t->minutes + t->seconds;
    const double units = t->frames + static_cast<double>(seconds) * unitsPerSecond;
    return ZeTruncate(sampleRate * units / unitsPerSecond + kFirstSample);
}

PosFmtReading SMPTELike_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned)
{
    const SubSecond* sub = SubSecondOf(fmt);
    if (!sub) return NoConversion();
    if (text.size() > kMostCharacters) return TooLong();

    std::wstring_view rest = text;
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
