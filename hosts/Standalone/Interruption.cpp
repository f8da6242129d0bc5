#include "Standalone/Interruption.h"

#include <cstdlib>

namespace {

volatile std::sig_atomic_t caught = 0;

struct sigaction actionOf(void (*handler)(int))
{
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    return action;
}

} // namespace

Interruption::Interruption()
{
    caught = 0;
    const struct sigaction note = actionOf([](int signal) { caught = signal; });
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &mBefore[i]);
        if (mBefore[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &note, nullptr);
    }
    // a file that grows beyond a limit is an error of its write, not the end of the program
    const struct sigaction ignore = actionOf(SIG_IGN);
    sigaction(SIGXFSZ, &ignore, &mTooLargeBefore);
}

Interruption::~Interruption()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &mBefore[i], nullptr);
    sigaction(SIGXFSZ, &mTooLargeBefore, nullptr);
}

void Interruption::check() const
{
    if (const int signal = caught) throw Interrupted{signal};
}

void endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(128 + signal); // where the signal is blocked
}
