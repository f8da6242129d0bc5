#include "AppKit/NSControl.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"
#include "Foundation/NSKeyValueBinding.h"

#include <string_view>

NS_CLASS_TABLE(NSControl, NSView, "")
NS_CLASS_TABLE_END

bool NSControl::initWithFrame(NSRect frame)
{
    if (!mCell) mCell = makeCell();
    return NSView::initWithFrame(frame);
}

bool NSControl::initWithCoder(NSCoder& coder)
{
    const RetainPtr<NSObject> described = coder.decodeObjectForKey("cell");
    mCell = asKind<NSCell>(described.get());
    if (!mCell) mCell = makeCell();
    return NSView::initWithCoder(coder);
}

void NSControl::setCell(NSCell* cell)
{
    mCell = cell;
    setNeedsDisplay();
}

RetainPtr<NSCell> NSControl::makeCell() const { return make<NSCell>(); }

// --- the value is the cell's

NSObject* NSControl::objectValue() const { return mCell ? mCell->objectValue() : nullptr; }
double NSControl::doubleValue() const { return mCell ? mCell->doubleValue() : 0.0; }
float NSControl::floatValue() const { return mCell ? mCell->floatValue() : 0.0F; }
int NSControl::intValue() const { return mCell ? mCell->intValue() : 0; }
RetainPtr<NSString> NSControl::stringValue() const { return mCell ? mCell->stringValue() : make<NSString>(); }

void NSControl::setObjectValue(NSObject* value)
{
    changeValue([value](NSCell& cell) { cell.setObjectValue(value); });
}

void NSControl::setDoubleValue(double value)
{
    changeValue([value](NSCell& cell) { cell.setDoubleValue(value); });
}

void NSControl::setFloatValue(float value)
{
    changeValue([value](NSCell& cell) { cell.setFloatValue(value); });
}

void NSControl::setIntValue(int value)
{
    changeValue([value](NSCell& cell) { cell.setIntValue(value); });
}

void NSControl::setStringValue(const NSString* value)
{
    changeValue([value](NSCell& cell) { cell.setStringValue(value); });
}

NSFormatter* NSControl::formatter() const { return mCell ? mCell->formatter() : nullptr; }

void NSControl::setFormatter(NSFormatter* formatter)
{
    if (mCell) mCell->setFormatter(formatter);
    setNeedsDisplay();
}

void NSControl::setValueForBinding(NSObject* value, const char* binding)
{
    if (binding == std::string_view(NSValueBinding)) return setObjectValue(value);
    NSView::setValueForBinding(value, binding);
}

// --- enabled, target and action

bool NSControl::isEnabled() const { return !mCell || mCell->isEnabled(); }

void NSControl::setEnabled(bool enabled)
{
    if (enabled == isEnabled() || !mCell) return;
    const RetainPtr<NSControl> keep(this);
    mCell->setEnabled(enabled);
    setNeedsDisplay();
    if (!enabled && window()) window()->resignFocusInside(this);
}

NSObject* NSControl::target() const { return mCell ? mCell->target() : nullptr; }
SEL NSControl::action() const { return mCell ? mCell->action() : nullptr; }

void NSControl::setTarget(NSObject* target)
{
    if (mCell) mCell->setTarget(target);
}

void NSControl::setAction(SEL action)
{
    if (mCell) mCell->setAction(action);
}

bool NSControl::sendAction(SEL action, NSObject* target)
{
    if (!action || !target) return false;
    const RetainPtr<NSControl> keep(this);
    const RetainPtr<NSObject> keepTarget(target);
    target->performSelector(action, this);
    return true;
}

void NSControl::drawRect(NSRect)
{
    const RetainPtr<NSCell> cell = mCell;
    if (cell) cell->drawWithFrame(bounds(), *this);
}
