#pragma once

/// Counts clicks: presses of the same button that follow each other soon and near are a double click, a triple one ...

#include "CoreGraphics/CGGeometry.h"

#include <cmath>

class NSClickCounter {
public:
    static constexpr double kLongestPause = 0.4;     ///< seconds from press to press
    static constexpr CGFloat kLongestDistance = 5.0; ///< points in x and in y

    /// @return the click count of this press: 1, or one more than that of the press before
    int press(unsigned button, NSPoint location, double seconds)
    {
        const bool follows = mCount > 0 && button == mButton && seconds - mSeconds <= kLongestPause &&
                             std::abs(location.x - mLocation.x) <= kLongestDistance &&
                             std::abs(location.y - mLocation.y) <= kLongestDistance;
        mCount = follows ? mCount + 1 : 1;
        mButton = button;
        mLocation = location;
        mSeconds = seconds;
        return mCount;
    }

private:
    int mCount = 0;
    unsigned mButton = 0;
    NSPoint mLocation;
    double mSeconds = 0;
};
