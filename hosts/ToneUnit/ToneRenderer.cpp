#include "ToneUnit/ToneRenderer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

using std::numbers::pi;

constexpr double kNyquistCycles = 0.5; // cycles per sample
constexpr double kFadeCycles = 0.05;   // width of the fade below Nyquist
constexpr double kLeastSummedCycles = kNyquistCycles / kToneMostPartials;

double RateOf(const ToneSettings& settings)
{
    return settings.sampleRate > 0.0 ? settings.sampleRate : kToneDefaultSampleRate;
}

double AmplitudeOf(double decibels) { return decibels > kToneSilenceDecibels ? std::pow(10.0, decibels / 20.0) : 0.0; }

/// Sum of `amplitude(k) * sin(2 pi k phase)` over k = 1, 1 + step, ... below Nyquist.
template <typename Amplitude> double SumOfPartials(double phase, double cycles, int step, Amplitude amplitude)
{
    // sin((k + step) x) = 2 cos(step x) sin(k x) - sin((k - step) x)
    const double x = 2.0 * pi * phase;
    const double turn = 2.0 * std::cos(step * x);
    double previous = std::sin((1 - step) * x);
    double current = std::sin(x);
    double sum = amplitude(1) * current;
    for (int k = 1 + step; k * cycles < kNyquistCycles; k += step) {
        previous = std::exchange(current, turn * current - previous);
        sum += std::min(1.0, (kNyquistCycles - k * cycles) / kFadeCycles) * amplitude(k) * current;
    }
    return sum;
}

/// What smooths a step from -1 to 1 at phase 0 over the sample before and the one after it.
double StepResidual(double phase, double cycles)
{
    if (phase < cycles) {
        const double t = phase / cycles - 1.0;
        return -t * t;
    }
    if (phase > 1.0 - cycles) {
        const double t = (phase - 1.0) / cycles + 1.0;
        return t * t;
    }
    return 0.0;
}

double Fraction(double phase) { return phase - std::floor(phase); }

double Triangle(double phase, double cycles)
{
    if (cycles < kLeastSummedCycles) return 1.0 - 4.0 * std::abs(Fraction(phase + 0.25) - 0.5);
    return 8.0 / (pi * pi) *
           SumOfPartials(phase, cycles, 2, [](int k) { return (k % 4 == 1 ? 1.0 : -1.0) / (double(k) * k); });
}

double Square(double phase, double cycles)
{
    if (cycles < kLeastSummedCycles)
        return (phase < 0.5 ? 1.0 : -1.0) + StepResidual(phase, cycles) - StepResidual(Fraction(phase + 0.5), cycles);
    return 4.0 / pi * SumOfPartials(phase, cycles, 2, [](int k) { return 1.0 / k; });
}

double Sawtooth(double phase, double cycles)
{
    if (cycles < kLeastSummedCycles) {
        const double shifted = Fraction(phase + 0.5);
        return 2.0 * shifted - 1.0 - StepResidual(shifted, cycles);
    }
    return 2.0 / pi * SumOfPartials(phase, cycles, 1, [](int k) { return (k % 2 == 1 ? 1.0 : -1.0) / k; });
}

double Wave(ToneWaveform waveform, double phase, double cycles)
{
    switch (waveform) {
    case ToneWaveform::Sine:
        break;
    case ToneWaveform::Triangle:
        return Triangle(phase, cycles);
    case ToneWaveform::Square:
        return Square(phase, cycles);
    case ToneWaveform::Sawtooth:
        return Sawtooth(phase, cycles);
    }
    return std::sin(2.0 * pi * phase);
}

/// Frequency in Hz after `part` of the length, 0 to 1.
double FrequencyAt(const ToneSettings& settings, double part)
{
    if (!settings.sweeps) return settings.startHz;
    if (settings.isLogarithmic) return settings.startHz * std::pow(settings.endHz / settings.startHz, part);
    return std::lerp(settings.startHz, settings.endHz, part);
}

} // namespace

std::uint64_t ToneLengthInSamples(const ToneSettings& settings)
{
    return static_cast<std::uint64_t>(std::llround(std::max(settings.lengthSeconds, 0.0) * RateOf(settings)));
}

void ToneGlide::jumpTo(double value)
{
    mValue = mTarget = value;
    mStepsLeft = 0;
}

void ToneGlide::moveTo(double target, int steps)
{
    if (target == mTarget) return;
    mTarget = target;
    mStep = (target - mValue) / steps;
    mStepsLeft = steps;
}

double ToneGlide::next()
{
    if (mStepsLeft > 0) mValue = --mStepsLeft > 0 ? mValue + mStep : mTarget;
    return mValue;
}

void ToneRenderer::begin(const ToneSettings& settings, double amplitude)
{
    if (std::exchange(mHasBegun, true)) return;
    mWaveform = settings.waveform;
    mAmplitude.jumpTo(amplitude);
}

/// A waveform that is wanted while two are being blended waits until that is done.
double ToneRenderer::wave(ToneWaveform wanted, double cycles, int glideSteps)
{
    if (wanted != mWaveform && !mBlend.isMoving()) {
        mBefore = std::exchange(mWaveform, wanted);
        mBlend.jumpTo(0.0);
        mBlend.moveTo(1.0, glideSteps);
    }
    const double now = Wave(mWaveform, mPhase, cycles);
    return mBlend.isMoving() ? std::lerp(Wave(mBefore, mPhase, cycles), now, mBlend.next()) : now;
}

void ToneRenderer::render(const ToneSettings& settings, std::span<float> samples)
{
    const double rate = RateOf(settings);
    const std::uint64_t length = std::max(ToneLengthInSamples(settings), std::uint64_t{settings.repeats});
    const double amplitude = AmplitudeOf(settings.gainDecibels);
    const int glideSteps = std::max(1, static_cast<int>(kToneGlideSeconds * rate));
    begin(settings, amplitude);
    for (float& sample : samples) {
        if (settings.repeats && mPosition >= length) mPosition = 0;
        const bool plays = mPosition < length;
        mAmplitude.moveTo(plays ? amplitude : 0.0, glideSteps);
        sample = 0.0f;
        if (!plays && !mAmplitude.isMoving()) continue;
        const double part = plays ? double(mPosition) / double(length) : 1.0;
        const double cycles = std::clamp(FrequencyAt(settings, part) / rate, 0.0, kNyquistCycles);
        const double level = mAmplitude.next();
        if (level > 0.0) sample = static_cast<float>(level * wave(settings.waveform, cycles, glideSteps));
        mPhase = Fraction(mPhase + cycles);
        if (plays && ++mPosition == length && !settings.repeats) mAmplitude.jumpTo(0.0); // the length's own end
    }
}
