#include "AppKit/NSCaretBlink.h"

NSCaretBlink::NSCaretBlink(std::function<void()> redraw) : mRedraw(std::move(redraw)) {}

NSCaretBlink::~NSCaretBlink() { stop(); }

void NSCaretBlink::start()
{
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    mShown = true;
    mSteadyAt = now + kSteadyAfterSeconds;
    if (mTimer) return CFRunLoopTimerSetNextFireDate(mTimer, now + kHalfPeriodSeconds);
    mTimer = CFRunLoopTimerCreate(now + kHalfPeriodSeconds, kHalfPeriodSeconds, [this] { tick(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer, kCFRunLoopCommonModes);
}

void NSCaretBlink::stop()
{
    CFRunLoopTimerInvalidate(mTimer);
    mTimer.reset();
    mShown = true;
}

void NSCaretBlink::tick()
{
    if (CFAbsoluteTimeGetCurrent() >= mSteadyAt)
        stop();
    else
        mShown = !mShown;
    mRedraw();
}
