#pragma once

/// Shapes that several controls draw into the current context. For sources of this folder.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSCell.h"

struct NSBoxStyle {
    NSAppearanceColorName fill;
    NSAppearanceColorName border;
    CGFloat radius = NSMetrics::controlCornerRadius;
};

/// A filled box with a line of one point inside its edge.
void NSDrawBox(CGContextRef context, NSRect rect, const NSBoxStyle& style);
void NSFillRounded(CGContextRef context, NSRect rect, CGFloat radius, NSAppearanceColorName color);

enum class NSChevron { up, down };
/// An open angle of 8 by 4 points around `center`.
void NSDrawChevron(CGContextRef context, NSPoint center, NSChevron direction, NSAppearanceColorName color);
/// A check mark inside a square of `size` around `center`.
void NSDrawCheckMark(CGContextRef context, NSPoint center, CGFloat size, NSAppearanceColorName color);

/// One line of text, centred vertically in `rect` and cut with an ellipsis where it is too long; null draws nothing.
void NSDrawLine(CGContextRef context, const NSString* text, CTFontRef font, NSRect rect, NSTextAlignment alignment,
                NSAppearanceColorName color);
CGFloat NSWidthOfLine(const NSString* text, CTFontRef font);

/// Whether `view` has the keyboard, so that its edge takes the colour of the ring around it.
bool NSShowsFocus(const NSView& view);

/// `rect` of this size in the middle of `frame`, on whole points.
NSRect NSCenteredRect(NSRect frame, NSSize size);
