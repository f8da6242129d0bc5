#pragma once

/// The rectangle of the old 16-bit drawing layer: four edges, y downward, the right and bottom ones outside.

#include <cstdint>

struct Rect {
    std::int16_t top, left, bottom, right;
    friend bool operator==(const Rect&, const Rect&) = default;
};
