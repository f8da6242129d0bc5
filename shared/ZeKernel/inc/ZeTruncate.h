#pragma once

#include <limits>

/// The one way from a float to an integer here: toward zero to 64 bits, saturating; not-a-number gives 0. A narrower
/// result keeps the low bits of it.
inline long long ZeTruncate(double value)
{
    constexpr double kEnd = 9223372036854775808.0; // 2^63
    if (value >= kEnd) return std::numeric_limits<long long>::max();
    if (value < -kEnd) return std::numeric_limits<long long>::min();
    return value == value ? static_cast<long long>(value) : 0; // not-a-number differs from itself
}
