#pragma once

/// Large rounded rectangles, cards for instance: only their corners are drawn as curves, and kept as
/// pictures; the rest is filled.

#include "AppKit/NSAppearance.h"

#include <optional>

/// @param border  of a hairline inside the edge; opaque
void NSDrawRoundedRect(CGContextRef context, NSRect rect, CGFloat radius, NSAppearanceColorName fill,
                       std::optional<NSAppearanceColorName> border = std::nullopt);
/// What lies inside of the corners: a rectangle that is filled as a whole, or a negative extent where there is none.
NSRect NSInsideOfRoundedRect(NSRect rect, CGFloat radius);
