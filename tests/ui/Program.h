#pragma once

/// A program that a test runs: its output by lines, its end.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

/// Seconds of a clock that never goes back.
double SecondsNow();
/// Whether PATH has a program of that name.
bool IsInstalled(const std::string& program);

class Program {
public:
    struct Line {
        std::string text;
        double seconds; ///< when it arrived
    };

    /// Starts it; the first argument is found by PATH. Settings are "NAME=value" and replace those of the test's own
    /// environment. @throw std::runtime_error that names the program when it can't be started
    explicit Program(const std::vector<std::string>& arguments, const std::vector<std::string>& settings = {});
    ~Program(); ///< kills it
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The next line of its standard output; nothing at its end or after that time.
    std::optional<Line> nextLine(double seconds);
    /// Lines up to and with the first that `isIt` accepts; the last one isn't it when it never came.
    std::vector<Line> linesUntil(const std::function<bool(const std::string&)>& isIt, double seconds = 10);
    /// Lines until none comes for `quiet` seconds, or for `limit` altogether.
    std::vector<Line> linesUntilQuiet(double quiet = 0.2, double limit = 10);
    /// All of its output, until it ends.
    std::string allOutput(double seconds = 20);
    void writeInput(const std::string& text); ///< and closes its standard input
    pid_t process() const { return mProcess; }
    void sendSignal(int signal);
    void terminate(); ///< asks it to end, and waits; kills it when it doesn't
    /// Its exit status, or minus the signal that ended it; nothing when it goes on.
    std::optional<int> waitForExit(double seconds);

private:
    bool readSome(double until);

    pid_t mProcess = -1;
    int mInput = -1, mOutput = -1;
    std::string mRead;
    bool mAtEnd = false;
    std::optional<int> mStatus;
};
