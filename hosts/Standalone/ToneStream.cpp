#include "Standalone/ToneStream.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFadeSeconds = 0.01;
constexpr double kTailSeconds = 0.02; ///< that a tone may take to fall silent where its length became shorter

} // namespace

void ToneStream::begin(double sampleRate)
{
    mRate = sampleRate;
    mRenderer.reset();
    mLevel = 1;
    mFades = mIsOver = false;
    mPosition = 0;
    mPeak = 0;
}

void ToneStream::render(std::span<float> samples) noexcept
{
    ToneSettings settings = mUnit.settings();
    settings.sampleRate = mRate; // the tone has its pitch and its length whatever the device's rate is
    mRenderer.render(settings, samples);
    if (mFades) fade(samples);
    measure(samples);
    const std::uint64_t position = mPosition + samples.size();
    mPosition = position;
    const auto tail = static_cast<std::uint64_t>(kTailSeconds * mRate);
    if (mLevel <= 0 || position >= ToneLengthInSamples(settings) + tail) mIsOver = true;
}

void ToneStream::fade(std::span<float> samples)
{
    const auto step = static_cast<float>(1 / (kFadeSeconds * mRate));
    for (float& sample : samples) {
        mLevel = std::max(0.0F, mLevel - step);
        sample *= mLevel;
    }
}

void ToneStream::measure(std::span<const float> samples)
{
    float peak = mPeak;
    for (const float sample : samples) peak = std::max(peak, std::abs(sample));
    mPeak = peak;
}
