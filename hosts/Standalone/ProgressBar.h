#pragma once

/// A line on a terminal that tells how far something is; nothing where standard error is no terminal.
///
///     tone.flac  [##########----------]  52 %

#include <cstdint>
#include <cstdio>
#include <string>

class ProgressBar {
public:
    explicit ProgressBar(std::string name, std::FILE* file = stderr);
    ~ProgressBar(); ///< ends the line
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Draws the line again where it changed.
    void show(std::uint64_t done, std::uint64_t all);

private:
    std::string mName;
    std::FILE* mFile; ///< null where nothing is drawn
    int mPercent = -1;
};
