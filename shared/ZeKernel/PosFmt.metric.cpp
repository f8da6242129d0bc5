#include "PosFmtNumbers.h"
#include "PosFmtText.h"
#include "ZePrint.h"

using namespace PosFmtInner;

namespace {

/// A position in the units of its format, and the decimals to write.
struct Shown {
    double value;
    std::size_t decimals;
};

Shown ShownOf(const ZePosFmt& fmt, double position, unsigned flags)
{
    const bool isWhole = flags & kPosFmtWholeUnits;
    switch (fmt.eFormat) {
    case QVPOSFMT_TIME_METRIC:
        return {position / fmt.dwSampleRate, flags & kPosFmtShort ? 3u : isWhole ? 0u : 6u};
    case QVPOSFMT_FRAMES_METRIC:
        return {position * (fmt.dFrameRate / fmt.dwSampleRate), isWhole ? 0u : 3u};
    default:
        return {position * 100.0 / static_cast<double>(fmt.ccPercentBase), isWhole ? 0u : 2u};
    }
}

/// Samples in one unit of the format.
double SamplesPerUnit(const ZePosFmt& fmt)
{
    switch (fmt.eFormat) {
    case QVPOSFMT_TIME_METRIC:
        return fmt.dwSampleRate;
    case QVPOSFMT_FRAMES_METRIC:
        return fmt.dwSampleRate / fmt.dFrameRate;
    default:
        return static_cast<double>(fmt.ccPercentBase) / 100.0;
    }
}

bool IsMetric(const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    return facts && facts->kernel == PosFmtKernel::Metric;
}

} // namespace

void Metric_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                     const ZeString& thousandSep, unsigned flags)
{
    if (!IsMetric(fmt)) return;
    const Shown shown = ShownOf(fmt, static_cast<double>(position), flags);
    const bool isPercent = fmt.eFormat == QVPOSFMT_PERCENT;
    WriteFloat(out, shown.value, shown.decimals, FirstOf(decimalSep), FirstOf(thousandSep), isPercent ? L" %" : L"");
}

PosFmtReading Metric_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                          const ZeString& thousandSep, unsigned)
{
    if (!IsMetric(fmt)) return NoConversion();
    if (text.size() > kMostCharacters) return TooLong();
    const Number number = ReadNumber(text, FirstOf(decimalSep), FirstOf(thousandSep));
    return ReadingOf(text, number.stop, ZeTruncate(number.value * SamplesPerUnit(fmt)));
}

long long Metric_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                          const ZeString& thousandSep, unsigned flags)
{
    return PositionOf(Metric_Read(text, fmt, decimalSep, thousandSep, flags));
}
