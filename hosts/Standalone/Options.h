#pragma once

/// The command line of `tonaro`.

#include "AppKit/NSAppearance.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct Options {
    enum class Mode { window, screenshot, controls, demo, render, listDevices, help, version };

    Mode mode = Mode::window;
    std::vector<std::pair<std::string, std::string>> settings; ///< of --set, in the order given
    std::string file;                                          ///< of --screenshot, --demo and --render
    double scale = 0;                                          ///< pixels per point; 0 asks the desktop
    std::optional<NSAppearanceName> appearance;                ///< without a value, the desktop's
    int editors = 1;
    bool trace = false;
    bool mute = false;  ///< plays on the clock alone
    std::string device; ///< to play on, as the list names it; empty for the first one there is
};

/// What was wrong with the command line, for a person.
struct UsageError {
    std::string message;
};

/// Something in the input is wrong: the message names it.
struct InputError {
    std::string message;
};

/// @throw UsageError
Options parseOptions(int argc, char** argv);
std::string helpText();
