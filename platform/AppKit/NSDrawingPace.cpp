#include "AppKit/NSDrawingPace.h"

#include <algorithm>
#include <utility>

NSDrawingPace& NSDrawingPace::current()
{
    static thread_local NSDrawingPace pace;
    return pace;
}

// The windows' observers come later, since their windows do.
NSDrawingPace::NSDrawingPace() : mLastTurn(CFAbsoluteTimeGetCurrent())
{
    CFRunLoopAddBeforeWaiting(CFRunLoopGetCurrent(), [this] { turnEnds(); });
}

void NSDrawingPace::turnEnds()
{
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    // another clock may have taken the place of the one before
    const CFTimeInterval passed = std::max(0.0, now - std::exchange(mLastTurn, now));
    mSaved = std::min(kMostSaved, mSaved + passed * kShare);
    mIsOpen = mSaved > 0;
}

bool NSDrawingPace::mayDraw()
{
    if (!mIsOpen && !std::exchange(mIsAwaited, true)) {
        const auto timer = CFRunLoopTimerCreate(mLastTurn - mSaved / kShare, 0, [this] { mIsAwaited = false; });
        CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer, kCFRunLoopCommonModes);
    }
    return mIsOpen;
}
