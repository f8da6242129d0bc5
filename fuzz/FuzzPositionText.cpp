// The kernel's parsers and writers themselves, with any separators.

#include "FuzzInput.h"
#include "ZePrint.h"

#include <algorithm>

namespace {

struct Trial {
    ZeString text, decimal, thousands, pattern;
    ZePosFmt fmt;
    unsigned flags;
    long long position;
    double number;
};

void expectInside(const PosFmtReading& reading, const ZeString& text)
{
    FuzzExpect(reading.stop <= text.size(), "reading stops inside the text");
    FuzzExpect(reading.accepted || reading.reason != PosFmtReason::None, "refused text has a reason");
}

void readAll(const Trial& trial)
{
    expectInside(SMPTE_Read(trial.text, trial.fmt, trial.thousands, trial.flags), trial.text);
    expectInside(SMPTELike_Read(trial.text, trial.fmt, trial.decimal, trial.thousands, trial.flags), trial.text);
    expectInside(Metric_Read(trial.text, trial.fmt, trial.decimal, trial.thousands, trial.flags), trial.text);
    expectInside(MusicTime_Read(trial.text, trial.fmt, trial.decimal, trial.thousands, trial.flags), trial.text);
}

void readFields(const Trial& trial)
{
    _smpteval label{};
    label.type = trial.flags;
    AsciiToSMPTE(trial.text, &label, trial.fmt.cTicksPerBeat, trial.thousands);
    if (AsciiToSMPTE(trial.text, &label, trial.thousands) && label.type >= 1 && label.type <= 5)
        FuzzExpect(label.hours < 24 && label.minutes < 60 && label.seconds < 60 && label.frames < 30,
                   "an accepted label has carried");
    SMPTEToPosition(trial.fmt.dwSampleRate, &label);
    AsciiToTime(trial.text, &label, trial.decimal, trial.thousands);
    SmpteLikeToPosition(trial.fmt.dwSampleRate, trial.number, &label);
    _measureval measure{};
    measure.timeSignature = trial.fmt.dwTimeSignature;
    measure.tempo = trial.fmt.dTempo;
    AsciiToMeasures(trial.text, &measure, trial.decimal[0], trial.thousands[0]);
    MeasuresToPosition(trial.fmt.dwSampleRate, &measure);
    ZeString cut = trial.text;
    double value = 0;
    myatof(cut.data(), &value, trial.decimal[0], trial.thousands[0]);
}

void writeAll(const Trial& trial)
{
    ZeString out;
    const ZePosFmt& fmt = trial.fmt;
    SMPTE_ToString(out, trial.position, fmt, trial.flags);
    SMPTELike_ToString(out, fmt, trial.position, trial.decimal, trial.flags);
    Metric_ToString(out, fmt, trial.position, trial.decimal, trial.thousands, trial.flags);
    MusicTime_ToString(out, fmt, trial.position, trial.decimal, trial.flags);
    FormatFloatPretty(out, trial.number, trial.pattern, trial.decimal, trial.thousands, trial.flags & 1);
    FuzzExpect(out.size() < 80, "a number has at most 79 characters");
    ZeString number = trial.text;
    FuzzExpect(PrettyNumber(number, trial.decimal, trial.thousands) == static_cast<int>(number.size()) &&
                   number.size() < 80,
               "a grouped number has the length that is told, 79 at most");
}

/// Timecode that is written reads back as a position that writes the same.
void expectRoundTrip(Trial& trial)
{
    ZePosFmt& fmt = trial.fmt;
    const PosFmtFacts* const facts = PosFmtFactsOf(fmt.eFormat);
    const bool isTimecode = facts && facts->kernel == PosFmtKernel::Smpte;
    if (!isTimecode || fmt.dwSampleRate < 8000 || fmt.dwSampleRate > 384000) return;
    const long long position = std::abs(trial.position % (24LL * 3600 * fmt.dwSampleRate));
    ZeString once, twice;
    SMPTE_ToString(once, position, fmt, 0);
    const PosFmtReading reading = SMPTE_Read(once, fmt, L",", 0);
    SMPTE_ToString(twice, reading.position, fmt, 0);
    FuzzExpect(reading.accepted && once == twice, "timecode reads back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    Trial trial;
    trial.fmt.dwSampleRate = input.take<unsigned>();
    trial.fmt.dFrameRate = input.take<double>();
    trial.fmt.dTempo = input.take<double>();
    trial.fmt.ccPercentBase = input.take<long long>();
    trial.fmt.dwTimeSignature = input.take<unsigned>();
    trial.fmt.cTicksPerBeat = input.take<unsigned>();
    trial.fmt.setType(static_cast<_qvposfmt_format>(input.take<std::uint8_t>() % (QVPOSFMT_PERCENT + 2)));
    trial.flags = input.take<std::uint8_t>() % 8;
    trial.position = input.take<long long>();
    trial.number = input.take<double>();
    trial.decimal = FuzzText(input.line());
    trial.thousands = FuzzText(input.line());
    trial.pattern = FuzzText(input.line());
    trial.text = FuzzText(input.rest());
    readAll(trial);
    readFields(trial);
    writeAll(trial);
    expectRoundTrip(trial);
    return 0;
}
