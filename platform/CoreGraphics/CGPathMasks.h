#pragma once

/// Small shapes that were drawn lately, as masks: a knob or the box of a field is drawn again and again, and copying
/// its coverage costs a tenth of finding it.
///
/// A shape is known by its elements, to Cairo's 256th of a pixel, and by its pen; where it stands doesn't matter as
/// long as it stands between the pixels in the same way. It is drawn through its mask from the first time on, so that
/// it always has the same pixels. The masks of a thread take 512 KiB at most; those that weren't used for the longest
/// time go.

#include "CoreGraphics/CGCairo.h"

/// What makes a stroke; none for a fill.
struct CGPen {
    CGFloat width;
    CGAffineTransform ctm; ///< which the pen's form follows
};

/// Draws `elements` (device space) with the source, clip and operator of `cairo`, as `cairo_fill` or `cairo_stroke`
/// would.
/// @return false when they must do it: the shape is large or plain
bool CGDrawByMask(cairo_t* cairo, const CGPathElements& elements, const std::optional<CGPen>& pen);
