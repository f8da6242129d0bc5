#pragma once

/// An X server without a screen, on a display of its own.

#include "ui/Program.h"

class Xvfb {
public:
    static constexpr int kWidth = 1280, kHeight = 1300;

    /// @throw std::runtime_error when the server isn't installed or doesn't start
    explicit Xvfb(const std::string& depth = "24", const std::vector<std::string>& options = {});

    const std::string& display() const { return mDisplay; }       ///< ":5"
    std::string setting() const { return "DISPLAY=" + mDisplay; } ///< for a program's environment
    void stop() { mServer.reset(); }                              ///< breaks every connection

private:
    std::optional<Program> mServer;
    std::string mDisplay;
};
