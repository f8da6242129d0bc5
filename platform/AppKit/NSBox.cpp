#include "AppKit/NSBox.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSRoundedRect.h"
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
    using enum NSAppearanceColorName;
    NSDrawRoundedRect(NSGraphicsContext::currentContext(), bounds(), dirty, NSMetrics::cardCornerRadius, cardColor,
                      cardBorderColor);
}
