#include "ToneUnit/ToneRenderer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace {

using std::numbers::pi;

std::vector<float> Rendered(const ToneSettings& settings, std::size_t count)
{
    std::vector<float> samples(count, 7.0f);
    ToneRenderer renderer;
    renderer.render(settings, samples);
    return samples;
}

/// Amplitude of the partial with that many cycles in the whole of the samples.
double AmplitudeAt(const std::vector<float>& samples, int cycles)
{
    const double count = double(samples.size());
    const std::complex<double> step = std::polar(1.0, -2.0 * pi * cycles / count);
    std::complex<double> turn = 1.0;
    std::complex<double> sum = 0.0;
    for (const float sample : samples) {
        sum += double(sample) * turn;
        turn *= step;
    }
    return 2.0 * std::abs(sum) / count;
}

/// Power of all that is no partial of a tone with that many cycles, in dB below the whole.
double StrangePowerDecibels(const std::vector<float>& samples, int cycles)
{
    double power = 0.0;
    for (const float sample : samples) power += double(sample) * sample;
    power /= double(samples.size());
    double strange = power;
    for (int k = cycles; 2 * k < int(samples.size()); k += cycles)
        strange -= std::pow(AmplitudeAt(samples, k), 2) / 2.0;
    return 10.0 * std::log10(std::max(strange, 1e-12) / power);
}

TEST(ToneRenderer, ASineIsExactAcrossBlocks)
{
    const ToneSettings settings{.sampleRate = 48000.0, .startHz = 997.0, .gainDecibels = 20.0 * std::log10(0.5)};
    std::vector<float> samples(10000);
    ToneRenderer renderer;
    std::span<float> rest(samples);
    for (std::size_t block = 1; !rest.empty(); block = block * 3 % 257) {
        const auto next = rest.first(std::min(block, rest.size()));
        renderer.render(settings, next);
        rest = rest.subspan(next.size());
    }
    double worst = 0.0;
    for (std::size_t n = 0; n < samples.size(); ++n)
        worst = std::max(worst, std::abs(samples[n] - 0.5 * std::sin(2.0 * pi * 997.0 * double(n) / 48000.0)));
    EXPECT_LT(worst, 1e-6);
}

TEST(ToneRenderer, SilenceFollowsTheLength)
{
    const ToneSettings settings{.sampleRate = 8000.0, .waveform = ToneWaveform::Square, .lengthSeconds = 0.1};
    const auto samples = Rendered(settings, 1000);
    EXPECT_EQ(ToneLengthInSamples(settings), 800u);
    EXPECT_NE(samples[799], 0.0f);
    EXPECT_TRUE(std::all_of(samples.begin() + 800, samples.end(), [](float sample) { return sample == 0.0f; }));
}

TEST(ToneRenderer, TheLowestGainIsSilenceInWhichTheToneGoesOn)
{
    ToneSettings settings{.sampleRate = 48000.0, .gainDecibels = kToneSilenceDecibels};
    ToneRenderer renderer;
    std::vector<float> samples(1000, 7.0f);
    renderer.render(settings, samples);
    EXPECT_TRUE(std::all_of(samples.begin(), samples.end(), [](float sample) { return sample == 0.0f; }));
    settings.gainDecibels = 0.0;
    renderer.render(settings, samples);
    EXPECT_NEAR(samples[999], std::sin(2.0 * pi * 440.0 * 1999.0 / 48000.0), 1e-6);
}

TEST(ToneRenderer, WaveformsHaveTheirPartialsAndNothingElse)
{
    // one second each, so that a partial's cycles are its hertz; the frequencies share no divisor with the rate
    static const struct {
        const char* why;
        ToneWaveform waveform;
        int sampleRate;
        int hz;
        double first;
        double second;
        double third;
        double mostStrangeDecibels;
    } kRows[] = {
        {"square", ToneWaveform::Square, 48000, 2501, 4 / pi, 0.0, 4 / pi / 3, -110.0},
        {"high square", ToneWaveform::Square, 48000, 7001, 4 / pi, 0.0, 4 / pi / 3, -110.0},
        {"sawtooth", ToneWaveform::Sawtooth, 48000, 2501, 2 / pi, 1 / pi, 2 / pi / 3, -110.0},
        {"half faded partial", ToneWaveform::Sawtooth, 48000, 11400, 2 / pi, 0.5 / pi, 0.0, -110.0},
        {"triangle", ToneWaveform::Triangle, 48000, 2501, 8 / (pi * pi), 0.0, 8 / (pi * pi) / 9, -110.0},
        {"square at 5 kHz", ToneWaveform::Square, 44100, 5000, 4 / pi, 0.0, 4 / pi / 3, -110.0},
        {"sawtooth at 5 kHz", ToneWaveform::Sawtooth, 44100, 5000, 2 / pi, 1 / pi, 2 / pi / 3, -110.0},
        {"triangle at 5 kHz", ToneWaveform::Triangle, 44100, 5000, 8 / (pi * pi), 0.0, 8 / (pi * pi) / 9, -110.0},
        {"sine", ToneWaveform::Sine, 48000, 19997, 1.0, 0.0, 0.0, -110.0},
        {"low square", ToneWaveform::Square, 8000, 13, 4 / pi, 0.0, 4 / pi / 3, -40.0},
        {"low sawtooth", ToneWaveform::Sawtooth, 8000, 13, 2 / pi, 1 / pi, 2 / pi / 3, -40.0},
        {"low triangle", ToneWaveform::Triangle, 8000, 13, 8 / (pi * pi), 0.0, 8 / (pi * pi) / 9, -80.0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const ToneSettings settings{.sampleRate = double(row.sampleRate),
                                    .waveform = row.waveform,
                                    .startHz = double(row.hz),
                                    .gainDecibels = 0.0,
                                    .lengthSeconds = 1.0};
        const auto samples = Rendered(settings, std::size_t(row.sampleRate));
        EXPECT_NEAR(AmplitudeAt(samples, row.hz), row.first, 1e-3);
        EXPECT_NEAR(AmplitudeAt(samples, 2 * row.hz % row.sampleRate), row.second, 1e-3);
        EXPECT_NEAR(AmplitudeAt(samples, 3 * row.hz % row.sampleRate), row.third, 1e-3);
        EXPECT_LT(StrangePowerDecibels(samples, row.hz), row.mostStrangeDecibels);
        EXPECT_EQ(samples[0], 0.0f);
        EXPECT_GT(samples[1], 0.0f);
    }
}

} // namespace
