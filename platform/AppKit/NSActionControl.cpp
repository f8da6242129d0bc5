#include "AppKit/NSActionControl.h"

#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSActionControl, NSControl, "")
NS_CLASS_TABLE_END

NSActionCell* NSActionControl::actionCell() const { return asKind<NSActionCell>(cell()); }

bool NSActionControl::isHighlighted() const { return actionCell() && actionCell()->isHighlighted(); }

void NSActionControl::setHighlighted(bool highlighted)
{
    if (isHighlighted() == highlighted || !actionCell()) return;
    actionCell()->setHighlighted(highlighted);
    setNeedsDisplay();
}

void NSActionControl::setEnabled(bool enabled)
{
    const RetainPtr<NSActionControl> keep(this);
    NSControl::setEnabled(enabled);
    if (!enabled) setHighlighted(false);
}

void NSActionControl::mouseEntered(NSEvent&)
{
    if (!actionCell()) return;
    actionCell()->setHovered(true);
    setNeedsDisplay();
}

void NSActionControl::mouseExited(NSEvent&)
{
    if (!actionCell()) return;
    actionCell()->setHovered(false);
    setNeedsDisplay();
}

NSPoint NSActionControl::localPoint(const NSEvent& event) const
{
    return convertPointFromWindow(event.locationInWindow());
}

bool NSActionControl::containsEvent(const NSEvent& event) const
{
    return CGRectContainsPoint(bounds(), localPoint(event));
}

bool NSActionControl::beginPress()
{
    const RetainPtr<NSWindow> in = window();
    if (!isEnabled() || !in) return false;
    // whoever loses the keyboard commits an edit, which may change anything, this control included
    if (!in->makeFirstResponder(this) || window() != in.get() || !isEnabled()) return false;
    in->beginTracking(this);
    return true;
}
