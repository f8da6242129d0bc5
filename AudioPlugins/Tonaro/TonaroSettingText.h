#pragma once

/// A complete setting of the tone as text, one parameter a line, as people pass it on in a message:
///
///     waveform=Sine
///     start-frequency=440
///
/// Names and values are those of the options of `tonaro`. Reading takes them in any order, divided by line ends, commas
/// or semicolons, with or without "--set "; of a name that stands there more than once the last counts.

#include "TonaroParameters.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The shortest text that reads back as the same float.
std::string shortestText(float value);

using TonaroSetting = std::vector<std::pair<std::uint32_t, float>>; ///< parameters and their values

std::string TonaroSettingText(const std::array<float, kParamCount>& values);

/// @return what the text says; empty where something in it can't be read, which `problem` then names ("gain=loud")
TonaroSetting TonaroSettingFromText(std::string_view text, std::string& problem);
