#pragma once

/// Plain types that the whole drawing library speaks of.

#include <cstdint>

namespace ZeGuiDefs {
/// Alpha in the low byte, then red, green and blue: 0xFF0000FF is opaque blue.
using Color = std::uint32_t;
} // namespace ZeGuiDefs

/// In pixels, or in units of the drawing.
struct tagSIZE {
    std::int32_t width = 0, height = 0;
    friend bool operator==(const tagSIZE&, const tagSIZE&) = default;
};
