#pragma once

/// The command line of `tonaro`.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct Options {
    enum class Mode { window, screenshot, controls, demo, help, version };

    Mode mode = Mode::window;
    std::vector<std::pair<std::string, std::string>> settings; ///< of --set, in the order given
    std::string file;                                          ///< of --screenshot and --demo
    double scale = 0;                                          ///< pixels per point; 0 asks the desktop
    int editors = 1;
    bool trace = false;
};

/// What was wrong with the command line, for a person.
struct UsageError {
    std::string message;
};

/// @throw UsageError
Options parseOptions(int argc, char** argv);
std::string helpText();
