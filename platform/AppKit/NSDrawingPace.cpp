#include "AppKit/NSDrawingPace.h"

#include <algorithm>
#include <utility>

namespace {

constexpr CFTimeInterval kLeastPause = 0.001; ///< a rest too short to move the clock would come again and again

} // namespace

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
    mIsOpen = mSaved >= 0;
}

bool NSDrawingPace::mayDraw()
{
    if (!mIsOpen && !std::exchange(mIsAwaited, true)) {
        const auto timer = CFRunLoopTimerCreate(mLastTurn + std::max(kLeastPause, -mSaved / kShare), 0,
                                                [this] { mIsAwaited = false; });
        CFRunLoopAddTimer(CFRunLoopGetCurrent(), timer, kCFRunLoopCommonModes);
    }
    return mIsOpen;
}
