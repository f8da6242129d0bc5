#pragma once

/// The blinking of a caret: every 0.53 s while somebody types, steady after 10 s without input, so that an idle window
/// does nothing.

#include "CoreFoundation/CFRunLoop.h"

class NSCaretBlink {
public:
    static constexpr CFTimeInterval kHalfPeriodSeconds = 0.53;
    static constexpr CFTimeInterval kSteadyAfterSeconds = 10;

    /// @param redraw  called when `isShown` changed by itself
    explicit NSCaretBlink(std::function<void()> redraw);
    ~NSCaretBlink();
    NSCaretBlink(const NSCaretBlink&) = delete;
    NSCaretBlink& operator=(const NSCaretBlink&) = delete;

    void start(); ///< there was input: shown, and blinking from now on
    void stop();
    bool isShown() const { return mShown; }

private:
    void tick();

    std::function<void()> mRedraw;
    RetainPtr<CFRunLoopTimer> mTimer;
    CFAbsoluteTime mSteadyAt = 0;
    bool mShown = true;
};
