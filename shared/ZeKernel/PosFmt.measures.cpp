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

struct MeasuresStop {
    bool accepted;
    Stop stop;
    const wchar_t* first; // the first character that is no blank
};

// Always inline: its two callers alone would make it a call, a tenth of the time of reading.
[[gnu::always_inline]] inline MeasuresStop ReadMeasures(std::wstring_view text, _measureval* m, wchar_t decimal,
                                                        wchar_t group)
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

/// Measures and beats that count from 1, as text has them, on the sample line.
long long PositionOfText(const ZePosFmt& fmt, const _measureval& m)
{
    const unsigned perMeasure = m.wBeatsPerMeasure;
    if (m.measures == 0) return 0;
    if (!(m.beats < 1.0)) return PositionOfBeats(fmt.dwSampleRate, m.tempo, perMeasure, m.measures - 1, m.beats - 1.0);
    if (m.measures == 1) return 0;
    return PositionOfBeats(fmt.dwSampleRate, m.tempo, perMeasure, m.measures - 2, m.beats + perMeasure - 1.0);
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
    const MeasuresStop read = ReadMeasures(text, &m, FirstOf(decimalSep), FirstOf(thousandSep));
    const bool isLength = flags & kPosFmtLength;
    const bool accepted = read.accepted && read.stop.reason != PosFmtReason::TextTooLong;
    if (accepted && !isLength && m.measures == 0) return ReadingOf(text, {read.first, PosFmtReason::MeasureZero}, 0);

    PosFmtReading reading =
        ReadingOf(text, read.stop, isLength ? MeasuresToPosition(fmt.dwSampleRate, &m) : PositionOfText(fmt, m));
    reading.accepted = accepted;
    return reading;
}

long long MusicTime_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags)
{
    return PositionOf(MusicTime_Read(text, fmt, decimalSep, thousandSep, flags));
}
