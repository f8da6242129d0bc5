#pragma once

#include "Foundation/NSLog.h"

#include <string>
#include <vector>

/// Catches what goes to the log while it exists.
struct CaughtLog {
    CaughtLog()
    {
        NSLogSetSink([this](std::string_view line) { lines.emplace_back(line); });
    }
    ~CaughtLog() { NSLogSetSink({}); }
    CaughtLog(const CaughtLog&) = delete;
    CaughtLog& operator=(const CaughtLog&) = delete;

    std::string text() const
    {
        std::string all;
        for (const std::string& line : lines) all += line + "\n";
        return all;
    }
    std::vector<std::string> lines;
};
