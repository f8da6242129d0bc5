#pragma once

/// The system log: standard error.

#include <functional>
#include <string_view>

/// Writes "program[process]: text" as one line with one system call, so that lines of several processes don't mix. The
/// format is printf's with UTF-8 text and '.' as decimal point. Any thread may call it.
[[gnu::format(printf, 1, 2)]] void NSLog(const char* format, ...);

/// Sends each text, without program and process, to `sink` instead; an empty function restores standard error.
void NSLogSetSink(std::function<void(std::string_view text)> sink);
