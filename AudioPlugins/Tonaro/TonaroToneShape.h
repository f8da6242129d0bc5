#pragma once

/// The tone as a line: its frequency on a mel axis over its length, and a wave with that many periods.

#include "CoreGraphics/CGGeometry.h"

#include <vector>

struct TonaroToneShape {
    double startHz = 440, endHz = 8000;
    bool sweeps = false, isLogarithmic = false;
    int waveform = 0; ///< sine, triangle, square, sawtooth
    double highestHz = 22050;

    bool operator==(const TonaroToneShape&) const = default;

    /// At that part of the length, from 0 to 1, as if it swept.
    double hzAt(double part) const;
    /// From 0 for 0 Hz to 1 for the highest frequency; kept inside.
    double heightOf(double hz) const;
    /// The frequency of a height, in whole hertz from 100 Hz on, else in hundredths; at least 0.01 Hz.
    double hzOf(double height) const;

    /// The path of the frequency inside a rectangle, y downwards; points at most `step` apart. The start frequency all
    /// along where it isn't asked as if it swept.
    std::vector<CGPoint> path(CGRect inside, bool asIfItSwept, CGFloat step = 4) const;
    /// The wave inside a rectangle: the higher the frequency, the shorter its periods, but never too short to be seen.
    std::vector<CGPoint> wave(CGRect inside, CGFloat step = 1.5) const;
};
