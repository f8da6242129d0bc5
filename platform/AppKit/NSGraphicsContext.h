#pragma once

/// Where drawing goes: the context of the view that is being drawn.

#include "CoreGraphics/CGContext.h"

class NSGraphicsContext {
public:
    /// Null outside of drawing.
    static CGContextRef currentContext();
    /// How many pixels a point of the context has; 1 outside of drawing.
    static CGFloat currentScale();

    /// Makes `context` the current one for as long as this lives; they nest.
    class Scope {
    public:
        explicit Scope(CGContextRef context);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        RetainPtr<CGContext> mPrevious;
    };
};

/// Fills exactly `rect` with the current fill colour.
void NSRectFill(NSRect rect);
/// Whether the edges of `rect` lie between pixels, so that none is covered in part.
bool NSStandsOnPixels(CGContextRef context, NSRect rect);
