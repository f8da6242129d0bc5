#include "AppKit/NSBox.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSBox, NSView, "")
NS_CLASS_TABLE_END

void NSBox::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const CGFloat hairline = 1 / NSGraphicsContext::currentScale(), radius = NSMetrics::cardCornerRadius;
    const auto add = [&](CGFloat inset) {
        CGContextBeginPath(context);
        CGContextAddRoundedRect(context, CGRectInset(bounds(), inset, inset), radius - inset);
    };
    add(hairline / 2);
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardColor));
    CGContextFillPath(context);
    add(hairline / 2);
    CGContextSetStrokeColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardBorderColor));
    CGContextSetLineWidth(context, hairline);
    CGContextStrokePath(context);
}
