#pragma once

/// The generator's parameters and its own properties: ids that the editor and a unit agree on.

#include <array>
#include <cstdint>

/// All in the global scope, element 0; values are 32-bit floats.
enum TonaroParameterID : std::uint32_t {
    kParamWaveform = 0,       ///< indexed: the parameter info's minValue plus the index of the name
    kParamStartFrequency = 1, ///< Hz
    kParamUseEnd = 2,         ///< sweeps to the end frequency when above 0
    kParamEndFrequency = 3,   ///< Hz
    kParamLogSweep = 4,       ///< sweeps evenly in pitch when above 0, in hertz otherwise
    kParamGain = 5,           ///< dB; -120 stands for minus infinity
    kParamLength = 6,         ///< seconds
    kParamCount = 7,
};

enum TonaroPropertyID : std::uint32_t {
    kPropertyInputLength = 3020, ///< unsigned 64-bit, samples; 0 when there is no input
    kPropertyTimeFormat = 9000,  ///< 32-bit: the position format in which lengths are shown
};

inline constexpr std::uint32_t kTonaroTimeFormats = 21;     ///< 0 to 20
inline constexpr double kTonaroDefaultSampleRate = 44100.0; ///< Hz; meant where a unit says 0

/// What the parameters are called in commands and in settings that are passed on as text, by their ids.
inline constexpr std::array<const char*, kParamCount> kTonaroParameterNames{
    "waveform", "start-frequency", "use-end", "end-frequency", "log-sweep", "gain", "length"};
/// The waveforms that can be named there, from value 0 on.
inline constexpr std::array<const char*, 4> kTonaroWaveformNames{"Sine", "Triangle", "Square", "Sawtooth"};
