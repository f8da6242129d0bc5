#include "AppKit/NSBox.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSBox, NSView, "")
NS_CLASS_TABLE_END

NSRect NSBox::opaqueRect() const
{
    constexpr CGFloat kInset = 0.3 * NSMetrics::cardCornerRadius + 1; // a square's corner touches the arc at 0.29
    return CGRectInset(bounds(), kInset, kInset);
}

void NSBox::drawRect(NSRect dirty)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    if (CGRectContainsRect(opaqueRect(), dirty)) {
        CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardColor));
        CGContextFillRect(context, dirty);
        return;
    }
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
