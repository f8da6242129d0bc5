#pragma once

/// What the two halves of the plug-in and their description, tonaro.ttl, agree on: names and ports.
///
/// The port of a parameter has the parameter's id as its index. Two plug-ins differ in their sound ports alone: the
/// mono one has no `kPortRight`.

#include "TonaroParameters.h"

inline constexpr const char* kTonaroMonoURI = "https://tonaro.org/lv2/mono";
inline constexpr const char* kTonaroStereoURI = "https://tonaro.org/lv2/stereo";
inline constexpr const char* kTonaroEditorURI = "https://tonaro.org/lv2/editor";
/// The plug-in's one property: an Int, the position format in which lengths are shown, 0 to 20. It is part of the
/// state, read and written by patch messages.
inline constexpr const char* kTonaroTimeFormatURI = "https://tonaro.org/lv2/timeFormat";

enum TonaroPort : std::uint32_t {
    kPortControl = kParamCount, ///< messages to the generator: patch messages, the transport's position
    kPortNotify,                ///< messages from it
    kPortLeft,
    kPortRight,
    kPortCount,
};

inline constexpr std::uint32_t kTonaroDefaultFormat = 1; ///< time
/// Top of the frequency ports, in Hz: what fits into a sample rate of 192000. The generator itself stops at half the
/// sample rate.
inline constexpr float kTonaroHighestPortHz = 96000.0f;
