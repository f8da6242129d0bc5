// The tone as a measuring instrument would see it: distortion, level, the ends of a sweep, and what a change of the
// settings does to it.

#include "ToneUnit/ToneRenderer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

using std::numbers::pi;

std::vector<float> Rendered(const ToneSettings& settings, std::size_t count)
{
    std::vector<float> samples(count);
    ToneRenderer().render(settings, samples);
    return samples;
}

struct Measured {
    double levelDecibels; ///< of the sine that fits best, against full scale
    double noiseDecibels; ///< power of all that is left without that sine, against the sine's
};

/// A least-squares fit of a sine with a whole number of cycles.
Measured MeasureSine(const std::vector<float>& samples, double cycles)
{
    double inPhase = 0.0, across = 0.0, power = 0.0;
    const auto angle = [&](std::size_t n) { return 2.0 * pi * cycles * double(n) / double(samples.size()); };
    for (std::size_t n = 0; n < samples.size(); ++n) {
        inPhase += 2.0 * double(samples[n]) * std::sin(angle(n)) / double(samples.size());
        across += 2.0 * double(samples[n]) * std::cos(angle(n)) / double(samples.size());
    }
    for (std::size_t n = 0; n < samples.size(); ++n)
        power += std::pow(double(samples[n]) - inPhase * std::sin(angle(n)) - across * std::cos(angle(n)), 2);
    const double sine = inPhase * inPhase + across * across;
    return {10.0 * std::log10(sine), 10.0 * std::log10(2.0 * power / double(samples.size()) / sine)};
}

TEST(ToneMeasurement, ASineIsPureAndAtItsLevel)
{
    static const struct {
        double sampleRate, hz, decibels;
    } kRows[] = {{44100.0, 997.0, 0.0},     {48000.0, 997.0, -12.0}, {48000.0, 20.0, -1.0},
                 {48000.0, 19997.0, -0.01}, {96000.0, 5000.0, -6.0}, {192000.0, 997.0, -60.0},
                 {48000.0, 12345.0, -119.0}};
    double worst = -1000.0;
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.hz << " Hz of " << row.sampleRate << " at " << row.decibels << " dB");
        const ToneSettings settings{
            .sampleRate = row.sampleRate, .startHz = row.hz, .gainDecibels = row.decibels, .lengthSeconds = 10.0};
        const auto measured = MeasureSine(Rendered(settings, std::size_t(row.sampleRate)), row.hz);
        EXPECT_NEAR(measured.levelDecibels, row.decibels, 0.01);
        EXPECT_LT(measured.noiseDecibels, -120.0);
        worst = std::max(worst, measured.noiseDecibels);
    }
    RecordProperty("worst distortion and noise in dB", std::to_string(worst));
}

/// Frequency in Hz at the samples [first, last), from each sample and its two neighbours, which for a sine of phase p
/// and step w add up to 2 sin(p) cos(w). Samples near zero tell nothing.
double FrequencyAround(const std::vector<float>& samples, std::size_t first, std::size_t last, double sampleRate)
{
    double product = 0.0, power = 0.0;
    for (std::size_t n = first; n < last; ++n) {
        product += (double(samples[n - 1]) + double(samples[n + 1])) * double(samples[n]);
        power += 2.0 * double(samples[n]) * double(samples[n]);
    }
    return std::acos(product / power) / (2.0 * pi) * sampleRate;
}

double LargestStep(const std::vector<float>& samples)
{
    double largest = 0.0;
    for (std::size_t n = 1; n < samples.size(); ++n)
        largest = std::max(largest, std::abs(double(samples[n]) - double(samples[n - 1])));
    return largest;
}

TEST(ToneMeasurement, ASweepPassesItsFrequenciesInTimeWithoutAClick)
{
    static const struct {
        const char* why;
        double startHz, middleHz, endHz;
        bool isLogarithmic;
    } kRows[] = {{"up", 1000.0, 4500.0, 8000.0, false},
                 {"up by octaves", 1000.0, 2828.427, 8000.0, true},
                 {"down by octaves", 16000.0, 5656.854, 2000.0, true}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const ToneSettings settings{.sampleRate = 48000.0,
                                    .startHz = row.startHz,
                                    .sweeps = true,
                                    .endHz = row.endHz,
                                    .isLogarithmic = row.isLogarithmic,
                                    .gainDecibels = 0.0,
                                    .lengthSeconds = 10.0};
        const auto samples = Rendered(settings, 480000);
        EXPECT_NEAR(FrequencyAround(samples, 1, 241, 48000.0), row.startHz, row.startHz * 2e-3);
        EXPECT_NEAR(FrequencyAround(samples, 240000 - 120, 240000 + 120, 48000.0), row.middleHz, row.middleHz * 1e-4);
        EXPECT_NEAR(FrequencyAround(samples, 480000 - 241, 480000 - 1, 48000.0), row.endHz, row.endHz * 2e-3);
        const double highest = std::max(row.startHz, row.endHz);
        EXPECT_LE(LargestStep(samples), 2.0 * std::sin(pi * highest / 48000.0) * 1.0001);
    }
}

TEST(ToneMeasurement, AChangeMakesNoStepLargerThanTheWaveformsOwn)
{
    const ToneSettings base{.sampleRate = 48000.0, .startHz = 997.0, .gainDecibels = -6.0, .lengthSeconds = 5.0};
    static const struct {
        const char* why;
        void (*change)(ToneSettings&);
        bool isSilent; ///< afterwards
    } kChanges[] = {
        {"louder", [](ToneSettings& settings) { settings.gainDecibels = 0.0; }, false},
        {"softer", [](ToneSettings& settings) { settings.gainDecibels = -60.0; }, false},
        {"off", [](ToneSettings& settings) { settings.gainDecibels = kToneSilenceDecibels; }, true},
        {"higher", [](ToneSettings& settings) { settings.startHz = 3011.0; }, false},
        {"lower", [](ToneSettings& settings) { settings.startHz = 53.0; }, false},
        {"sine", [](ToneSettings& settings) { settings.waveform = ToneWaveform::Sine; }, false},
        {"square", [](ToneSettings& settings) { settings.waveform = ToneWaveform::Square; }, false},
        {"triangle", [](ToneSettings& settings) { settings.waveform = ToneWaveform::Triangle; }, false},
        {"sweep", [](ToneSettings& settings) { settings.sweeps = true; }, false},
        {"over at once", [](ToneSettings& settings) { settings.lengthSeconds = 0.01; }, true},
        {"shorter, and repeats",
         [](ToneSettings& settings) {
             settings.repeats = true;
             settings.lengthSeconds = 0.01;
         },
         false},
    };
    for (const ToneWaveform waveform : {ToneWaveform::Sine, ToneWaveform::Triangle, ToneWaveform::Square})
        for (const auto& row : kChanges) {
            SCOPED_TRACE(testing::Message() << row.why << " from waveform " << int(waveform));
            ToneSettings before = base;
            before.waveform = waveform;
            ToneSettings after = before;
            row.change(after);
            const double own = std::max(LargestStep(Rendered(before, 48000)), LargestStep(Rendered(after, 48000)));
            // at many places of the wave; the frequencies share no divisor with the rate
            for (const std::size_t at : {1012u, 1013u, 1024u, 1031u, 1036u, 1047u}) {
                std::vector<float> samples(4800);
                ToneRenderer renderer;
                renderer.render(before, std::span(samples).first(at));
                renderer.render(after, std::span(samples).subspan(at));
                EXPECT_LE(LargestStep(samples), own * 1.01) << "at " << at;
                EXPECT_EQ(samples.back() == 0.0f && samples[samples.size() - 7] == 0.0f, row.isSilent);
            }
        }
}

TEST(ToneMeasurement, ChangesInAFewMillisecondsAreContinuous)
{
    ToneSettings settings{.sampleRate = 48000.0, .startHz = 440.0, .gainDecibels = -6.0, .lengthSeconds = 60.0};
    std::vector<float> samples;
    ToneRenderer renderer;
    for (int block = 0; block < 300; ++block) {
        settings.gainDecibels = block % 3 == 0 ? 0.0 : -20.0 - block % 7;
        settings.waveform = block % 2 == 0 ? ToneWaveform::Sine : ToneWaveform::Triangle;
        std::vector<float> next(64);
        renderer.render(settings, next);
        samples.insert(samples.end(), next.begin(), next.end());
    }
    EXPECT_LE(LargestStep(samples), 2.0 * pi * 440.0 / 48000.0 * 1.01);
}

} // namespace
