// How much of a thread drawing may take.

#include "AppKit/NSDrawingPace.h"

#include <gtest/gtest.h>

namespace {

/// A turn after so long.
void run(double seconds)
{
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false);
    CFRunLoopWakeUp(CFRunLoopGetCurrent());
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
}

TEST(NSDrawingPace, HoldsBackOnlyWhatGoesOnForLong)
{
    const CFManualClock clock;
    NSDrawingPace& pace = NSDrawingPace::current();
    run(10);
    EXPECT_TRUE(pace.mayDraw()) << "after a rest";
    pace.drew(NSDrawingPace::kMostSaved * 0.9);
    run(0);
    EXPECT_TRUE(pace.mayDraw()) << "a drawing that the rest has paid for";

    int frames = 0; // each takes 10 ms, 60 of them a second are asked for
    for (int i = 0; i < 600; ++i) {
        if (pace.mayDraw()) {
            pace.drew(0.010);
            ++frames;
        }
        run(1.0 / 60);
    }
    EXPECT_LE(frames * 0.010 / 10, NSDrawingPace::kShare) << "of ten seconds";
    EXPECT_GE(frames, 60) << "turns come every 17 ms, so some of the share is lost";
}

TEST(NSDrawingPace, LetsNothingWaitForLongerThanWhatItMayOwe)
{
    const CFManualClock clock;
    NSDrawingPace& pace = NSDrawingPace::current();
    pace.drew(100);
    run(0);
    ASSERT_FALSE(pace.mayDraw());
    double waited = 0;
    while (!pace.mayDraw() && waited < 1) {
        run(0.01);
        waited += 0.01;
    }
    EXPECT_LE(waited, NSDrawingPace::kMostOwed / NSDrawingPace::kShare + 0.02);
}

} // namespace
