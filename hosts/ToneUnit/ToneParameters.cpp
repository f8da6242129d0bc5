#include "ToneUnit/ToneParameters.h"

#include <algorithm>

// A sample at the highest rate that is of use; shorter ones last as long.
constexpr float kShortestSeconds = 1e-6f;
// 86400 s is a whole day, which timecode shows as 0; the longest tone is the 32-bit float before it.
constexpr float kLongestSeconds = 86399.9921875f;

constexpr auto kIndexed = kAudioUnitParameterUnit_Indexed;
constexpr auto kSwitch = kAudioUnitParameterUnit_Boolean;
constexpr auto kHertz = kAudioUnitParameterUnit_Hertz;
constexpr auto kDecibels = kAudioUnitParameterUnit_Decibels;
constexpr auto kSeconds = kAudioUnitParameterUnit_Seconds;
constexpr auto& kNames = kTonaroParameterNames;

// clang-format off
constexpr std::array<ToneParameterFacts, kParamCount> kTable{{
    {kParamWaveform,       kNames[kParamWaveform],       "Waveform",          kIndexed,  0.0f,                 3.0f,             0.0f},
    {kParamStartFrequency, kNames[kParamStartFrequency], "Start Frequency",   kHertz,    0.01f,                kToneUpToNyquist, 440.0f},
    {kParamUseEnd,         kNames[kParamUseEnd],         "Use End Frequency", kSwitch,   0.0f,                 1.0f,             0.0f},
    {kParamEndFrequency,   kNames[kParamEndFrequency],   "End Frequency",     kHertz,    0.01f,                kToneUpToNyquist, 8000.0f},
    {kParamLogSweep,       kNames[kParamLogSweep],       "Logarithmic Sweep", kSwitch,   0.0f,                 1.0f,             0.0f},
    {kParamGain,           kNames[kParamGain],           "Gain",              kDecibels, kToneSilenceDecibels, 0.0f,             -12.0f},
    {kParamLength,         kNames[kParamLength],         "Length",            kSeconds,  kShortestSeconds,     kLongestSeconds,  2.5f},
}};
// clang-format on

static_assert([] {
    for (std::size_t i = 0; i < kTable.size(); ++i)
        if (kTable[i].id != i) return false;
    return true;
}());

constinit const std::array<ToneParameterFacts, kParamCount> kToneParameters = kTable;

const ToneParameterFacts* FindToneParameter(AudioUnitParameterID id)
{
    return id < kToneParameters.size() ? &kToneParameters[id] : nullptr;
}

const ToneParameterFacts* FindToneParameter(std::string_view optionName)
{
    const auto found = std::find_if(kToneParameters.begin(), kToneParameters.end(),
                                    [&](const ToneParameterFacts& facts) { return facts.optionName == optionName; });
    return found == kToneParameters.end() ? nullptr : &*found;
}

float ToneMaximum(const ToneParameterFacts& facts, double sampleRate)
{
    if (facts.maxValue != kToneUpToNyquist) return facts.maxValue;
    return static_cast<float>((sampleRate > 0.0 ? sampleRate : kToneDefaultSampleRate) * 0.5);
}

float HeldValue(const ToneParameterFacts& facts, float value, double sampleRate)
{
    if (facts.unit == kSwitch) return value > 0.0f ? 1.0f : 0.0f;
    const float held = std::clamp(value, facts.minValue, ToneMaximum(facts, sampleRate));
    return facts.unit == kIndexed ? static_cast<float>(static_cast<int>(held)) : held;
}

ToneSettings ToneSettingsOf(const std::array<float, kParamCount>& held, double sampleRate)
{
    return {
        .sampleRate = sampleRate,
        .waveform = static_cast<ToneWaveform>(static_cast<int>(held[kParamWaveform])),
        .startHz = double{held[kParamStartFrequency]},
        .sweeps = held[kParamUseEnd] > 0.0f,
        .endHz = double{held[kParamEndFrequency]},
        .isLogarithmic = held[kParamLogSweep] > 0.0f,
        .gainDecibels = double{held[kParamGain]},
        .lengthSeconds = double{held[kParamLength]},
    };
}
