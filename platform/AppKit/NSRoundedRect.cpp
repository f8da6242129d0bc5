#include "AppKit/NSRoundedRect.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSStill.h"

#include <cmath>

namespace {

struct Style {
    CGFloat radius, hairline; // points; no hairline without a border
    NSAppearanceColorName fill;
    std::optional<NSAppearanceColorName> border;
};

void FillWith(CGContextRef context, NSAppearanceColorName color, NSRect dirty, std::initializer_list<NSRect> rects)
{
    CGContextSetFillColorWithColor(context, NSAppearanceColor(color));
    for (const NSRect rect : rects)
        if (CGRectIntersectsRect(rect, dirty)) CGContextFillRect(context, rect);
}

void DrawAsCurves(CGContextRef context, NSRect rect, const Style& style)
{
    const CGFloat inset = style.hairline / 2, radius = style.radius - inset;
    const NSRect middle = CGRectInset(rect, inset, inset); // of the border's line
    NSFillRounded(context, middle, radius, style.fill);
    if (!style.border) return;
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, middle, radius);
    CGContextSetStrokeColorWithColor(context, NSAppearanceColor(*style.border));
    CGContextSetLineWidth(context, style.hairline);
    CGContextStrokePath(context);
}

/// A corner of a small rectangle looks like that of a large one.
void DrawCorner(CGContextRef context, NSRect rect, NSRect corner, const Style& style)
{
    const CGFloat size = 3 * corner.size.width;
    const bool isLeft = corner.origin.x == rect.origin.x, isTop = corner.origin.y == rect.origin.y;
    const NSRect small = CGRectMake(isLeft ? rect.origin.x : CGRectGetMaxX(rect) - size,
                                    isTop ? rect.origin.y : CGRectGetMaxY(rect) - size, size, size);
    const NSStillKey key{"corner",
                         {NSAppearanceColor(style.fill), style.border ? NSAppearanceColor(*style.border) : nullptr},
                         {style.radius},
                         2 * isLeft + isTop};
    NSDrawStill(context, corner, key, [&](CGContextRef on) { DrawAsCurves(on, small, style); });
}

} // namespace

NSRect NSInsideOfRoundedRect(NSRect rect, CGFloat radius)
{
    const CGFloat inset = 0.3 * radius; // a square's corner touches the arc at 0.29
    return CGRectInset(rect, inset, inset);
}

void NSDrawRoundedRect(CGContextRef context, NSRect rect, CGFloat radius, NSAppearanceColorName fill,
                       std::optional<NSAppearanceColorName> border)
{
    const NSRect dirty = CGContextGetClipBoundingBox(context);
    const CGFloat scale = NSGraphicsContext::currentScale();
    const Style style = {radius, border ? 1 / scale : 0, fill, border};
    const CGFloat c = std::ceil(radius * scale) / scale; // a corner's side, whole pixels
    const CGFloat x = rect.origin.x, y = rect.origin.y, width = rect.size.width, height = rect.size.height;
    if (!NSStandsOnPixels(context, rect) || width < 3 * c || height < 3 * c) return DrawAsCurves(context, rect, style);

    const CGFloat right = CGRectGetMaxX(rect), bottom = CGRectGetMaxY(rect), h = style.hairline;
    FillWith(context, fill, dirty,
             {CGRectMake(x, y + c, width, height - 2 * c), CGRectMake(x + c, y, width - 2 * c, c),
              CGRectMake(x + c, bottom - c, width - 2 * c, c)});
    if (border)
        FillWith(context, *border, dirty,
                 {CGRectMake(x, y + c, h, height - 2 * c), CGRectMake(right - h, y + c, h, height - 2 * c),
                  CGRectMake(x + c, y, width - 2 * c, h), CGRectMake(x + c, bottom - h, width - 2 * c, h)});
    for (const CGFloat cornerX : {x, right - c})
        for (const CGFloat cornerY : {y, bottom - c})
            if (const NSRect corner = CGRectMake(cornerX, cornerY, c, c); CGRectIntersectsRect(corner, dirty))
                DrawCorner(context, rect, corner, style);
}
