#include "PosFmtNumbers.h"
#include "ZePrint.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>

using namespace PosFmtInner;

namespace {

/// What a ruler is told of a step.
struct Ticks {
    double samples;
    bool coarse;
    unsigned stepCount;
};

// Formats of hours, minutes, seconds and sub-second units.

/// A step; one of the four is set.
struct HmsStep {
    unsigned hours = 0, minutes = 0, seconds = 0;
    long long units = 0;
};

/// The larger half of a table look-up: counts from `from` on take `step`.
struct Row {
    unsigned from, step;
};

unsigned StepFor(unsigned count, const Row* rows)
{
    while (count < rows->from) ++rows;
    return rows->step;
}

constexpr Row kHours[] = {{14, 24}, {7, 12}, {5, 6}, {3, 4}, {2, 2}, {0, 1}};
constexpr Row kSixtieths[] = {{26, 30}, {11, 15}, {6, 10}, {3, 5}, {2, 2}, {0, 1}};
constexpr unsigned kNextUnitFrom = 41; // sixtieths from here on take one of the larger unit
constexpr unsigned kRoundUpFrom = 21;  // sixtieths of the smaller unit that count as one more

/// Fractions of a second for rates above 40: from more than `over` of them the step is `step`.
constexpr struct {
    double over, step;
} kFractions[] = {{0.25, 0.5},   {0.12, 0.2},    {0.065, 0.1},   {0.025, 0.05},
                  {0.012, 0.02}, {0.0065, 0.01}, {0.0025, 0.005}};

/// A share of the rate, truncated to whole units.
long long Share(double fraction, long long rate) { return ZeTruncate(fraction * static_cast<double>(rate)); }

long long UnitStep(long long units, long long rate)
{
    if (rate > 40) {
        for (const auto& row : kFractions)
            if (units > Share(row.over, rate)) return std::max(Share(row.step, rate), 1LL);
        return std::max(units, 1LL);
    }
    if (units >= 11) return ZeTruncate((0.05 + static_cast<double>(rate)) * 0.5);
    if (units >= 6) return 10;
    if (units >= 3) return rate == 24 ? 4 : 5;
    return std::max(units, 1LL);
}

HmsStep StepOfSpan(double seconds, double exactRate, long long rate)
{
    double whole = 0;
    const double fraction = std::modf(seconds, &whole);
    const unsigned h = Truncated32(whole / 3600) % 24;
    const unsigned m = Truncated32(whole / 60) % 60;
    const unsigned s = Truncated32(std::fmod(whole, 60));
    if (h > 0) return {.hours = StepFor(h + (m >= kRoundUpFrom), kHours)};
    if (m > 0) {
        const unsigned count = m + (s >= kRoundUpFrom);
        if (count >= kNextUnitFrom) return {.hours = 1};
        return {.minutes = StepFor(count, kSixtieths)};
    }
    const long long units = WholeUnit(fraction * exactRate);
    if (s > 0) {
        const unsigned count = s + (units >= Share(0.25, rate));
        if (count >= kNextUnitFrom) return {.minutes = 1};
        return {.seconds = StepFor(count, kSixtieths)};
    }
    if (units > Share(0.6, rate)) return {.seconds = 1};
    return {.units = UnitStep(units, rate)};
}

/// 50 units are shown as 10 parts, 125 as 5.
unsigned CountOfUnits(long long units)
{
    if (units < 21 || units % 5 != 0) return static_cast<unsigned>(units);
    long long divided = units;
    long long count = units / 5;
    while (divided >= 105 && count % 5 == 0) {
        divided = count;
        count /= 5;
    }
    return static_cast<unsigned>(count);
}

Ticks HmsTicks(double span, const ZePosFmt& fmt)
{
    const double exactRate = RateFromPosFmt(fmt);
    const long long rate = NearestFrame(exactRate);
    const HmsStep step = StepOfSpan(span / fmt.dwSampleRate, exactRate, rate);
    double seconds = step.seconds + step.hours * 3600.0 + step.minutes * 60.0;
    if (rate >= 2) seconds += static_cast<double>(step.units) / static_cast<double>(rate);
    const unsigned count = step.seconds   ? step.seconds
                           : step.minutes ? step.minutes
                           : step.hours   ? step.hours
                                          : CountOfUnits(step.units);
    return {std::ceil(seconds * fmt.dwSampleRate), seconds > 1.0, count};
}

// Decimal formats.

struct Decade {
    double step;
    unsigned stepCount;
};

/// The next of 1, 2, 5 and 10 times a power of ten.
Decade DecadeOf(double value)
{
    const double log = std::log10(value);
    const int exponent = static_cast<int>(ZeTruncate(log));
    const long long hundredths = ZeTruncate(log * 100 - exponent * 100.0);
    const double power = std::pow(10.0, exponent);
    if (hundredths >= 80) return {10 * power, 10};
    if (hundredths >= 40) return {5 * power, 5};
    if (hundredths >= 10) return {2 * power, 20};
    return {power, 10};
}

Ticks SampleTicks(double span)
{
    const Decade decade = DecadeOf(span);
    return {std::max(decade.step, 1.0), false, decade.stepCount};
}

Ticks SecondTicks(double span, const ZePosFmt& fmt)
{
    const Decade decade = DecadeOf(span / fmt.dwSampleRate);
    return {std::ceil(std::max(decade.step, 1.0) * fmt.dwSampleRate), decade.step > 1.0, decade.stepCount};
}

Ticks FrameTicks(double span, const ZePosFmt& fmt)
{
    const Decade decade = DecadeOf(span / fmt.dwSampleRate * fmt.dFrameRate);
    const double samples = std::max(decade.step, 1.0) / fmt.dFrameRate * fmt.dwSampleRate;
    return {std::ceil(samples), decade.step > 1.0, decade.stepCount};
}

// Musical time.

Ticks MusicTicks(double span, const ZePosFmt& fmt)
{
    const unsigned perMeasure = fmt.wBeatsPerMeasure;
    const unsigned perBeat = fmt.cTicksPerBeat;
    const double ticks = std::floor(span / fmt.dwSampleRate * (fmt.dTempo / 60) * perBeat + 0.5);
    const unsigned wholeMeasures = Truncated32(ticks / (perBeat * perMeasure));
    const unsigned wholeBeats = Truncated32(std::fmod(ticks / perBeat, perMeasure));
    const unsigned restTicks = Truncated32(std::fmod(ticks, perBeat));
    const auto samplesOf = [&](double beats) { return std::ceil(beats / fmt.dTempo * 60 * fmt.dwSampleRate); };

    if (wholeMeasures != 0) {
        const double measures = 2.0 * std::bit_floor(wholeMeasures + (wholeBeats > 1));
        return {samplesOf(perMeasure * measures), true, 4};
    }
    if (wholeBeats != 0) {
        const unsigned beats = wholeBeats + (restTicks > 1);
        return {samplesOf(beats), true, beats};
    }
    if (restTicks > perBeat / 2) return {samplesOf(1), true, 4};
    const unsigned even = restTicks >= 17 ? restTicks + restTicks % 2 : restTicks;
    const unsigned count = std::max(even, 1u);
    return {samplesOf(static_cast<double>(count) / perBeat), false, count};
}

Ticks TicksOf(double span, const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    if (!facts) return {span, false, 0};
    if (facts->isHMSF) return HmsTicks(span, fmt);
    if (facts->format > QVPOSFMT_RESERVED_16) return {span, false, 0};
    if (facts->format == QVPOSFMT_SAMPLES) return SampleTicks(span);
    if (facts->rate == PosFmtFacts::kTickRate) return MusicTicks(span, fmt);
    if (facts->rate == PosFmtFacts::kFrameRate) return FrameTicks(span, fmt);
    return SecondTicks(span, fmt);
}

} // namespace

double NiceTick(double span, const ZePosFmt& fmt, bool* coarse, unsigned* stepCount)
{
    const Ticks ticks = TicksOf(span, fmt);
    *coarse = ticks.coarse;
    *stepCount = ticks.stepCount;
    return ticks.samples;
}
