#include "AppKit/NSControlDrawing.h"

#include "AppKit/NSStill.h"
#include "AppKit/NSWindow.h"

#include <cmath>

void NSFillRounded(CGContextRef context, NSRect rect, CGFloat radius, NSAppearanceColorName color)
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, rect, radius);
    CGContextFillPath(context);
}

void NSDrawBox(CGContextRef context, NSRect rect, const NSBoxStyle& style)
{
    const std::array colors{NSAppearanceColor(style.fill), NSAppearanceColor(style.border)};
    const NSRect needed = CGContextGetClipBoundingBox(context);
    if (CGRectContainsRect(CGRectInset(rect, std::max(style.radius, 1.0), 1), needed)) { // between the corners
        CGContextSetFillColorWithColor(context, colors[0]);
        return CGContextFillRect(context, needed);
    }
    NSDrawStill(context, rect, {"box", colors, {style.radius}}, [&](CGContextRef on) {
        NSFillRounded(on, rect, style.radius, style.fill);
        CGContextSetStrokeColorWithColor(on, colors[1]);
        CGContextSetLineWidth(on, 1);
        CGContextBeginPath(on);
        CGContextAddRoundedRect(on, CGRectInset(rect, 0.5, 0.5), style.radius - 0.5);
        CGContextStrokePath(on);
    });
}

namespace {

struct Polyline {
    NSPoint from, corner, to;
};

void StrokePolyline(CGContextRef context, const Polyline& line, CGFloat width, NSAppearanceColorName color)
{
    const ScopedGState state(context);
    CGContextSetStrokeColorWithColor(context, NSAppearanceColor(color));
    CGContextSetLineWidth(context, width);
    CGContextSetLineCap(context, kCGLineCapRound);
    CGContextSetLineJoin(context, kCGLineJoinRound);
    CGContextBeginPath(context);
    CGContextMoveToPoint(context, line.from.x, line.from.y);
    CGContextAddLineToPoint(context, line.corner.x, line.corner.y);
    CGContextAddLineToPoint(context, line.to.x, line.to.y);
    CGContextStrokePath(context);
}

} // namespace

void NSDrawChevron(CGContextRef context, NSPoint center, NSChevron direction, NSAppearanceColorName color)
{
    const NSStillKey key{"chevron", {NSAppearanceColor(color)}, {}, static_cast<int>(direction)};
    NSDrawStill(context, CGSquareAround(center, 6), key, [&](CGContextRef on) {
        const CGFloat tip = direction == NSChevron::down ? 2 : -2;
        StrokePolyline(on, {{center.x - 4, center.y - tip}, {center.x, center.y + tip}, {center.x + 4, center.y - tip}},
                       1.75, color);
    });
}

void NSDrawCheckMark(CGContextRef context, NSPoint center, CGFloat size, NSAppearanceColorName color)
{
    NSDrawStill(
        context, CGSquareAround(center, size / 2), {"check mark", {NSAppearanceColor(color)}}, [&](CGContextRef on) {
            const auto at = [&](CGFloat x, CGFloat y) { return NSPoint{center.x + x * size, center.y + y * size}; };
            StrokePolyline(on, {at(-0.26, 0.02), at(-0.07, 0.21), at(0.27, -0.19)}, size / 9, color);
        });
}

void NSDrawLine(CGContextRef context, const NSString* text, CTFontRef font, NSRect rect, NSTextAlignment alignment,
                NSAppearanceColorName color)
{
    if (!text || text->length() == 0 || !(rect.size.width > 0)) return;
    const auto line = CTLineCreate(CTTruncatedEnd(text->units(), font, rect.size.width), font);
    const CTLineBounds bounds = CTLineGetTypographicBounds(line.get());
    const CGFloat slack = rect.size.width - bounds.width;
    const CGFloat x = alignment == NSRightTextAlignment ? slack : alignment == NSCenterTextAlignment ? slack / 2 : 0;
    // the capitals, not the whole line, look centred: they are as high as the ascent without its room for accents
    const CGFloat height = CTFontGetAscent(font) + CTFontGetDescent(font);
    const CGFloat baseline = CGRectGetMidY(rect) - height / 2 + CTFontGetAscent(font);
    CTLineDraw(line.get(), context, {rect.origin.x + x, std::round(baseline)}, NSAppearanceColor(color));
}

CGFloat NSWidthOfLine(const NSString* text, CTFontRef font)
{
    if (!text || text->length() == 0) return 0;
    return CTLineGetTypographicBounds(CTLineCreate(text->units(), font).get()).width;
}

bool NSShowsFocus(const NSView& view)
{
    const NSWindow* window = view.window();
    return window && window->isKeyWindow() && window->firstResponder() == &view;
}

NSRect NSCenteredRect(NSRect frame, NSSize size)
{
    return CGRectMake(std::floor(CGRectGetMidX(frame) - size.width / 2),
                      std::floor(CGRectGetMidY(frame) - size.height / 2), size.width, size.height);
}
