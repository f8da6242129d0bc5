#pragma once

/// Large rounded rectangles, cards for instance: only their corners are drawn as curves, which are small enough to be
/// drawn by kept masks; the rest is filled.

#include "AppKit/NSAppearance.h"

#include <optional>

/// @param border  of a hairline inside the edge; opaque
void NSDrawRoundedRect(CGContextRef context, NSRect rect, CGFloat radius, NSAppearanceColorName fill,
                       std::optional<NSAppearanceColorName> border = std::nullopt);
