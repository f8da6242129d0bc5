#pragma once

/// The command line of `zepos`.

#include "PosFmt.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct Options {
    enum class Mode { convert, ticks, listFormats, help, version };

    Mode mode = Mode::convert;
    std::optional<_qvposfmt_format> from, to; ///< without one, plain sample counts
    unsigned sampleRate = 44100;
    double frameRate = 25;
    double tempo = 120;
    unsigned short beatsPerMeasure = 4, beatValue = 4;
    unsigned ticksPerBeat = 960;
    long long percentBase = 0; ///< 0 while none is given
    long long offset = 0;
    bool isLength = false;
    double span = 0; ///< of --ticks-for, in samples
    std::optional<std::string> locale;
    std::vector<std::string_view> operands; ///< point into the command line
};

/// What was wrong with the command line, for a person; empty where that has been said.
struct UsageError {
    std::string message;
};

/// @throw UsageError
Options parseOptions(int argc, char** argv);

std::string helpText();
