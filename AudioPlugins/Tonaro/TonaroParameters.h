#pragma once

/// The generator's parameters and its own properties: ids that the editor and a unit agree on.

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
