#include "PosFmtNumbers.h"
#include "PosFmtText.h"
#include "ZePrint.h"

using namespace PosFmtInner;

namespace {

/// Added to measures and to beats before they are truncated, so that a position on a beat shows that beat.
constexpr double kBias = 0.00005;

/// The product is 32 bits wide, as both counts are.
long long PositionOfBeats(unsigned sampleRate, double tempo, unsigned beatsPerMeasure, unsigned measures, double beats)
{
    return ZeTruncate((beatsPerMeasure * measures + beats) / tempo * 60 * sampleRate + 0.5);
}

/// The digit after the decimal character counts quarter beats.
double QuarterBeats(double beats)
{
    const unsigned whole = Truncated32(beats);
    return whole + (beats - whole) * 0.25 * 10.0;
}

/// Digits from `at` on. @return the first other character
const wchar_t* ReadWrittenDigits(const wchar_t* at, const wchar_t* end, unsigned long long& value)
{
    value = 0;
    for (unsigned digit = 0; at != end && (digit = static_cast<unsigned>(*at - L'0')) < 10; ++at)
        value = value * 10 + digit;
    return at;
}

/// Text of the form "21:2.607", as it is written and read most, with as many digits as are exact. @return false for any
/// other text, which takes the long way
inline bool ReadWrittenMeasures(std::wstring_view text, _measureval* m, wchar_t decimal, wchar_t group)
{
    constexpr std::size_t kExactCharacters = 15;
    constexpr double kPowersOf10[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                      1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (text.size() > kExactCharacters || group == L':' || IsDigit(group) || decimal == group) return false;
    const wchar_t* const begin = text.data();
    const wchar_t* const end = begin + text.size();
    unsigned long long measures = 0, beats = 0, fraction = 0;
    const wchar_t* const colon = ReadWrittenDigits(begin, end, measures);
    if (colon == begin || colon == end || *colon != L':') return false;
    const wchar_t* const point = ReadWrittenDigits(colon + 1, end, beats);
    if (point == colon + 1 || point == end || *point != decimal || IsBlank(decimal) || decimal == L'%') return false;
    if (ReadWrittenDigits(point + 1, end, fraction) != end) return false;
    const double value = static_cast<double>(beats) + static_cast<double>(fraction) / kPowersOf10[end - point - 1];
    m->measures = static_cast<unsigned>(measures);
    m->beats = QuarterBeats(value + kFractionGuard);
    return true;
}

struct MeasuresStop {
    bool accepted;
    Stop stop;
    const wchar_t* first; // the first character that is no blank
};

MeasuresStop ReadMeasures(std::wstring_view text, _measureval* m, wchar_t decimal, wchar_t group)
{
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* const first = SkipBlanks(text.data(), end);
    const auto asItIs = [](wchar_t c) { return c; };
    m->beats = 0;
    const wchar_t* const at = SkipBlanks(ReadDigits(first, end, group, asItIs, m->measures), end);
    if (at == end || *at == L'\0') return {true, {at, PosFmtReason::None}, first};
    if (*at != L':') return {false, {at, PosFmtReason::UnexpectedCharacter}, first};

    const std::wstring_view rest(at + 1, end);
    if (rest.empty()) return {true, {end, PosFmtReason::None}, first};
    // Choice: beats past 79 characters are refused as a position and 0 here. Test: AsciiToMeasures.ReadsFields
    if (rest.size() > kMostCharacters) return {true, {at + 1 + kMostCharacters, PosFmtReason::TextTooLong}, first};
    const Number number = ReadNumber(rest, decimal, group);
    if (number.stop.reason == PosFmtReason::None) {
        m->beats = QuarterBeats(number.value);
        return {true, {number.stop.at, PosFmtReason::None}, first};
    }
    m->beats = number.value;
    return {true, number.stop, first};
}

/// Measures and beats on the sample line; those of text count from 1, those of a length from 0.
long long PositionOfText(const ZePosFmt& fmt, const _measureval& m, unsigned flags)
{
    if (flags & kPosFmtLength) return MeasuresToPosition(fmt.dwSampleRate, &m);
    const unsigned perMeasure = m.wBeatsPerMeasure;
    if (m.measures == 0) return 0;
    if (!(m.beats < 1.0)) return PositionOfBeats(fmt.dwSampleRate, m.tempo, perMeasure, m.measures - 1, m.beats - 1.0);
    if (m.measures == 1) return 0;
    return PositionOfBeats(fmt.dwSampleRate, m.tempo, perMeasure, m.measures - 2, m.beats + perMeasure - 1.0);
}

/// Any text, the long way.
[[gnu::noinline]] PosFmtReading ReadOdd(const ZeString& text, const ZePosFmt& fmt, wchar_t decimal, wchar_t group,
                                        unsigned flags)
{
    _measureval m{};
    m.timeSignature = fmt.dwTimeSignature;
    m.tempo = fmt.dTempo;
    const MeasuresStop read = ReadMeasures(text, &m, decimal, group);
    PosFmtReading reading = ReadingOf(text, read.stop, PositionOfText(fmt, m, flags));
    reading.accepted = read.accepted && read.stop.reason != PosFmtReason::TextTooLong;
    if (reading.accepted && !(flags & kPosFmtLength) && m.measures == 0)
        return ReadingOf(text, {read.first, PosFmtReason::MeasureZero}, 0);
    return reading;
}

} // namespace

bool PositionToMeasures(long long position, unsigned sampleRate, _measureval* m)
{
    const double perMeasure = m->wBeatsPerMeasure;
    const double measures = static_cast<double>(position) * m->tempo / perMeasure / 60 / sampleRate + kBias;
    m->measures = Truncated32(measures);
    m->beats = (measures - m->measures) * perMeasure;
    return true;
}

long long MeasuresToPosition(unsigned sampleRate, const _measureval* m)
{
    return PositionOfBeats(sampleRate, m->tempo, m->wBeatsPerMeasure, m->measures, m->beats);
}

bool AsciiToMeasures(const ZeString& text, _measureval* m, wchar_t decimalChar, wchar_t groupChar)
{
    return ReadMeasures(text, m, decimalChar, groupChar).accepted;
}

void MusicTime_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                        unsigned flags)
{
    const double perMeasure = fmt.wBeatsPerMeasure;
    const double measures = Magnitude(position) * fmt.dTempo / perMeasure / 60 / fmt.dwSampleRate + kBias;
    const unsigned measure = Truncated32(measures);
    const double beats = (measures - measure) * perMeasure;
    const unsigned beat = Truncated32(beats);
    const unsigned ticks = Truncated32(fmt.cTicksPerBeat * (beats - beat + kBias));
    const unsigned one = flags & kPosFmtLength ? 0 : 1;

    const wchar_t decimal = FirstOf(decimalSep);
    const unsigned measureDigits = DigitsOf(measure + one);
    const unsigned beatDigits = DigitsOf(beat + one);
    const unsigned tickDigits = DigitsOf(ticks);
    TextWriter writer(out, measureDigits + 1 + beatDigits + (decimal ? 1 + tickDigits : 0));
    writer.number(measure + one, measureDigits);
    writer.character(L':');
    writer.number(beat + one, beatDigits);
    if (!decimal) return;
    writer.character(decimal);
    writer.number(ticks, tickDigits);
}

PosFmtReading MusicTime_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags)
{
    _measureval m{};
    m.timeSignature = fmt.dwTimeSignature;
    m.tempo = fmt.dTempo;
    if (ReadWrittenMeasures(text, &m, FirstOf(decimalSep), FirstOf(thousandSep)) && m.measures != 0)
        return {true, PosFmtReason::None, text.size(), PositionOfText(fmt, m, flags)};
    return ReadOdd(text, fmt, FirstOf(decimalSep), FirstOf(thousandSep), flags);
}

long long MusicTime_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags)
{
    return PositionOf(MusicTime_Read(text, fmt, decimalSep, thousandSep, flags));
}
