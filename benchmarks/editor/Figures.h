#pragma once

/// What a measurement tells: lines of a name and a number.

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

inline void print(const char* name, double value) { std::printf("%s %.6g\n", name, value); }

inline double medianOf(std::vector<double> values)
{
    if (values.empty()) throw std::runtime_error("nothing was measured");
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
