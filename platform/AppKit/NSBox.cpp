#include "AppKit/NSBox.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSRoundedRect.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSBox, NSView, "")
NS_CLASS_TABLE_END

NSRect NSBox::opaqueRect() const
{
    return CGRectInset(NSInsideOfRoundedRect(bounds(), NSMetrics::cardCornerRadius), 1, 1); // without the border
}

void NSBox::drawRect(NSRect)
{
    using enum NSAppearanceColorName;
    NSDrawRoundedRect(NSGraphicsContext::currentContext(), bounds(), NSMetrics::cardCornerRadius, cardColor,
                      cardBorderColor);
}
