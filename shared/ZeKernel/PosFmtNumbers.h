#pragma once

/// From floating point to whole numbers: the rules that the conversions share. Each is defined for every input.

#include "ZeTruncate.h"

#include <cmath>

namespace PosFmtInner {

/// The low 32 bits of the truncated number.
inline unsigned Truncated32(double x) { return static_cast<unsigned>(ZeTruncate(x)); }

/// The nearest whole number, halves to even; limits as when truncated.
inline long long Nearest(double x)
{
    // Below 2^51 adding 1.5 * 2^52 leaves no room for a fraction, so the addition itself rounds; far cheaper than a
    // call, and the default rounding mode is the only one in use.
    constexpr double kNoFraction = 0x1.8p52;
    if (std::abs(x) < 0x1p51) return static_cast<long long>((x + kNoFraction) - kNoFraction);
    return ZeTruncate(std::nearbyint(x));
}

/// Hides what division leaves behind: 15 billionths of one frame or unit.
constexpr double kTolerance = 0.000000015;

/// The nearest whole frame; an exact half goes up.
inline long long NearestFrame(double frames) { return Nearest(frames + kTolerance); }

/// The last whole unit; a value less than kTolerance below a unit counts as that unit.
inline long long WholeUnit(double units) { return Nearest(units - 0.499999985); }

/// Added to a count of samples before it is truncated: the first whole sample of a frame.
constexpr double kFirstSample = 0.999;

/// The magnitude; the lowest position has one too.
inline double Magnitude(long long position) { return std::abs(static_cast<double>(position)); }

} // namespace PosFmtInner
