#pragma once

/// Shapes that look the same each time they are drawn, kept as pictures: a knob or the box of a field is drawn again
/// and again, and copying it costs a fraction of finding its edges.
///
/// A still is known by its key, its size, and how its place lies between the pixels; where it stands doesn't matter.
/// It is drawn through its picture from the first time on, so that it always has the same pixels. Large ones, and those
/// in a context that turns or stretches them, are drawn as they are. The pictures take 1 MiB at most; those that
/// weren't used for the longest time go. All of this belongs to the thread that draws.

#include "CoreGraphics/CGContext.h"

#include <array>
#include <functional>
#include <string_view>

/// Everything that a shape's look depends on, besides its size.
struct NSStillKey {
    std::string_view shape;             ///< a literal
    std::array<CGColorRef, 2> colors{}; ///< of the appearance
    std::array<CGFloat, 3> measures{};  ///< a radius, for instance
    int variant = 0;

    bool operator==(const NSStillKey&) const = default;
};

/// Draws into `rect` of `context`, in the normal blend mode.
///
/// @param draw  draws the shape into the context that it is given, with the coordinates of this one; nothing outside
///              of `rect` is kept
void NSDrawStill(CGContextRef context, CGRect rect, const NSStillKey& key,
                 const std::function<void(CGContextRef)>& draw);
