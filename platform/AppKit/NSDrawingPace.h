#pragma once

/// Keeps drawing from taking a thread for itself: a hundred windows that change all the time are drawn less often, a
/// window under the hand at once.
///
/// Drawing may take `kShare` of the time. What isn't used is saved, up to `kMostSaved` seconds of drawing, so that
/// nothing waits but what goes on for long, and nothing longer than 0.35 seconds. All windows of a turn of the
/// run loop draw, or none.

#include "CoreFoundation/CFRunLoop.h"

#include <algorithm>

class NSDrawingPace {
public:
    static NSDrawingPace& current(); ///< of this thread; for windows, which are made after it

    bool mayDraw(); ///< in this turn; otherwise the run loop wakes when it is time
    void drew(CFTimeInterval seconds) { mSaved = std::clamp(mSaved - seconds, -kMostOwed, mSaved); }

    static constexpr double kShare = 0.13;
    static constexpr CFTimeInterval kMostSaved = 0.03, kMostOwed = 0.045;

private:
    NSDrawingPace();
    void turnEnds();

    CFTimeInterval mSaved = kMostSaved;
    CFAbsoluteTime mLastTurn;
    bool mIsOpen = true;
    bool mIsAwaited = false; // a timer will make the turn in which windows may draw again
};
