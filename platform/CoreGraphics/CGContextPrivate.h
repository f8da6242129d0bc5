#pragma once

/// For CoreText, which draws with the library below the context.

#include "CoreGraphics/CGContext.h"

#include <functional>

struct _cairo;

/// Calls `draw` with the context's transformation and clip in place and `color`, or its pattern, as the source; the
/// context's alpha is counted in. What `draw` changes doesn't stay.
void CGContextDrawInColor(CGContextRef context, CGColorRef color, const std::function<void(_cairo*)>& draw);
