#pragma once

/// Notices that the program is asked to end (Ctrl-C, a closed terminal, `kill`) while something is to be tidied up.
///
/// A signal that was ignored before, as in a program started with `nohup`, stays ignored.

#include <array>
#include <csignal>

/// Thrown by who was interrupted.
struct Interrupted {
    int signal;
};

class Interruption {
public:
    Interruption();
    ~Interruption(); ///< the signals do again what they did before
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// @throw Interrupted once a signal came
    void check() const;

private:
    static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, kSignals.size()> mBefore{};
    struct sigaction mTooLargeBefore {};
};

/// Ends the program as the signal would have done.
[[noreturn]] void endBySignal(int signal);
