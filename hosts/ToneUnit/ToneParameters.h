#pragma once

/// The facts about the generator's parameters, and the settings they make together.
///
/// A value is made to fit by `HeldValue`: limited to its range; an index cut to a whole number; a switch on for
/// anything above 0. At 48000 Hz a start frequency of 30000 is held as 24000, and a waveform of 2.9 as 2.

#include "AudioUnit/AudioUnit.h"
#include "TonaroParameters.h"

#include <array>
#include <string_view>

enum class ToneWaveform { Sine, Triangle, Square, Sawtooth };
inline constexpr auto kToneWaveformNames = kTonaroWaveformNames;

struct ToneParameterFacts {
    TonaroParameterID id;   ///< the row's own index
    const char* optionName; ///< as a person types it in a command: "start-frequency"
    const char* name;       ///< as a host shows it
    AudioUnitParameterUnit unit;
    float minValue;
    float maxValue; ///< `kToneUpToNyquist` for half the sample rate
    float defaultValue;
};

inline constexpr float kToneUpToNyquist = -1.0f;
inline constexpr float kToneSilenceDecibels = -120.0f;
inline constexpr double kToneDefaultSampleRate = kTonaroDefaultSampleRate; ///< Hz; also meant by a rate of 0
inline constexpr double kToneHighestSampleRate = 768000.0;
/// Whether a tone can be made at that rate; not-a-number is none.
constexpr bool IsToneSampleRate(double hz) { return hz >= 1.0 && hz <= kToneHighestSampleRate; }

extern const std::array<ToneParameterFacts, kParamCount> kToneParameters;

/// The row of that id or option name; null when there is none.
const ToneParameterFacts* FindToneParameter(AudioUnitParameterID id);
const ToneParameterFacts* FindToneParameter(std::string_view optionName);

/// The largest value at that sample rate, in Hz; a rate of 0 counts as `kToneDefaultSampleRate`.
float ToneMaximum(const ToneParameterFacts& facts, double sampleRate);
/// What is held where `value` is asked for. `value` is a number.
float HeldValue(const ToneParameterFacts& facts, float value, double sampleRate);

struct ToneSettings {
    double sampleRate = kToneDefaultSampleRate; ///< Hz; 0 counts as the default
    ToneWaveform waveform = ToneWaveform::Sine;
    double startHz = 440.0;
    bool sweeps = false; ///< to `endHz`, over the length
    double endHz = 8000.0;
    bool isLogarithmic = false;
    double gainDecibels = -12.0; ///< -120 and below is silence
    double lengthSeconds = 2.5;  ///< silence follows
    bool repeats = false;        ///< starts over after the length instead, without a gap
};

/// @param held  the parameters' values, by their ids, as `HeldValue` makes them fit
ToneSettings ToneSettingsOf(const std::array<float, kParamCount>& held, double sampleRate);
