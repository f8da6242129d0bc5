#include "PosFmt.h"

#include "ZePrint.h"

#include <iterator>

namespace {

using enum PosFmtKernel;

constexpr double kNtsc = 30000.0 / 1001.0;
constexpr double kNtscFilm = 24000.0 / 1001.0;
constexpr double kFrameRate = PosFmtFacts::kFrameRate;
constexpr double kTickRate = PosFmtFacts::kTickRate;

constexpr PosFmtFacts kFacts[] = {
    // format, kernel, hours to sub-seconds, frame rate of the type, units of a ruler, kind of timecode
    {QVPOSFMT_SAMPLES, Samples, false, 0, 1, SMPTETYPE_NONE},
    {QVPOSFMT_TIME, SmpteLike, true, 0, 100, SMPTETYPE_NONE},
    {QVPOSFMT_TIME_METRIC, Metric, false, 0, 1, SMPTETYPE_NONE},
    {QVPOSFMT_FRAMES, SmpteLike, true, 0, kFrameRate, SMPTETYPE_NONE},
    {QVPOSFMT_FRAMES_METRIC, Metric, false, 0, kFrameRate, SMPTETYPE_NONE},
    {QVPOSFMT_MEASURES, MusicTime, false, 0, kTickRate, SMPTETYPE_NONE},
    {QVPOSFMT_SMPTE_NONDROP_29, Smpte, true, kNtsc, kNtsc, SMPTETYPE_NONDROP_29},
    {QVPOSFMT_SMPTE_NONDROP_30, Smpte, true, 30, 30, SMPTETYPE_NONDROP_30},
    {QVPOSFMT_SMPTE_DROP, Smpte, true, kNtsc, kNtsc, SMPTETYPE_DROP},
    {QVPOSFMT_SMPTE_EBU, Smpte, true, 25, 25, SMPTETYPE_EBU},
    {QVPOSFMT_SMPTE_FILM, Smpte, true, 24, 24, SMPTETYPE_FILM},
    {QVPOSFMT_RESERVED_11, None, false, 0, 1, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_12, None, false, 0, 1, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_13, None, false, 0, kTickRate, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_14, None, false, 0, kTickRate, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_15, None, false, 0, kFrameRate, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_16, None, false, 0, kFrameRate, SMPTETYPE_NONE},
    {QVPOSFMT_TIME_CD, SmpteLike, true, 75, 75, SMPTETYPE_NONE},
    {QVPOSFMT_SMPTE_NONDROP_23, None, true, kNtscFilm, kNtscFilm, SMPTETYPE_NONE},
    {QVPOSFMT_RESERVED_19, None, false, 0, 1, SMPTETYPE_NONE},
    {QVPOSFMT_PERCENT, Metric, false, 0, 1, SMPTETYPE_NONE},
};

static_assert([] {
    for (int i = 0; i < int(std::size(kFacts)); ++i)
        if (kFacts[i].format != i) return false;
    return std::size(kFacts) == QVPOSFMT_PERCENT + 1;
}());

constexpr struct {
    PosFmtReason reason;
    const char* text;
} kReasons[] = {
    {PosFmtReason::None, ""},
    {PosFmtReason::UnexpectedCharacter, "unexpected character"},
    {PosFmtReason::TooManyFields, "too many fields"},
    {PosFmtReason::FieldAfterFraction, "colon after the decimal separator"},
    {PosFmtReason::SecondSeparator, "second decimal separator"},
    {PosFmtReason::SeparatorNotRead, "this decimal separator can't be read here"},
    {PosFmtReason::MeasureZero, "measures count from 1"},
    {PosFmtReason::TextTooLong, "text too long"},
    {PosFmtReason::NotANumber, "not a number"},
    {PosFmtReason::NoConversion, "this format has no text"},
};

} // namespace

const PosFmtFacts* PosFmtFactsOf(int format)
{
    return format >= 0 && format < int(std::size(kFacts)) ? &kFacts[format] : nullptr;
}

const char* PosFmtReasonText(PosFmtReason reason)
{
    for (const auto& row : kReasons)
        if (row.reason == reason) return row.text;
    return "";
}

double RateFromPosFmt(const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    if (!facts) return 1.0;
    if (facts->rate == kFrameRate) return fmt.dFrameRate;
    if (facts->rate == kTickRate) return unsigned{fmt.wBeatsPerMeasure} * fmt.cTicksPerBeat * fmt.dTempo / 60;
    return facts->rate;
}
