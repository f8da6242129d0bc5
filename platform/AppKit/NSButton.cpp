#include "AppKit/NSButton.h"

#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSButton, NSActionControl, "")
NS_CLASS_TABLE_END

namespace {
constexpr CFTimeInterval kFlashSeconds = 0.1;
}

NSButton::~NSButton() { CFRunLoopTimerInvalidate(mFlashTimer.get()); }

RetainPtr<NSCell> NSButton::makeCell() const { return make<NSButtonCell>(); }
NSButtonCell* NSButton::buttonCell() const { return asKind<NSButtonCell>(cell()); }

void NSButton::setButtonType(NSButtonType type)
{
    if (buttonCell()) buttonCell()->setButtonType(type);
    setNeedsDisplay();
}

void NSButton::setBezelStyle(NSBezelStyle style)
{
    if (buttonCell()) buttonCell()->setBezelStyle(style);
    setNeedsDisplay();
}

int NSButton::state() const { return buttonCell() ? buttonCell()->state() : NSOffState; }

void NSButton::setState(int state)
{
    if (buttonCell()) buttonCell()->setState(state);
    setNeedsDisplay();
}

const NSString* NSButton::title() const { return cell() ? cell()->title() : nullptr; }

void NSButton::setTitle(const NSString* title)
{
    if (cell()) cell()->setTitle(title);
    setNeedsDisplay();
}

void NSButton::performClick(NSObject*)
{
    if (!isEnabled() || !buttonCell()) return;
    buttonCell()->setNextState();
    setNeedsDisplay();
    sendAction(action(), target());
}

void NSButton::mouseDown(NSEvent&)
{
    const RetainPtr<NSButton> self = this;
    if (beginPress()) setHighlighted(true);
}

void NSButton::mouseDragged(NSEvent& event) { setHighlighted(isEnabled() && containsEvent(event)); }
void NSButton::mouseUp(NSEvent& event) { mouseDragged(event); }

void NSButton::trackingDidEnd(bool byRelease)
{
    const bool clicked = byRelease && isHighlighted();
    setHighlighted(false);
    if (clicked) performClick(this);
}

void NSButton::keyDown(NSEvent& event)
{
    const unichar key = event.keyCharacter();
    const bool returns = key == NSCarriageReturnCharacter || key == NSEnterCharacter;
    const bool pushes = buttonCell() && buttonCell()->buttonType() != NSSwitchButton;
    if (key != u' ' && !(returns && pushes)) return NSActionControl::keyDown(event);
    // a held key clicks once
    if (event.isARepeat() || !isEnabled()) return;
    const RetainPtr<NSButton> self = this;
    flash();
    performClick(this);
}

void NSButton::flash()
{
    setHighlighted(true);
    CFRunLoopTimerInvalidate(mFlashTimer.get());
    mFlashTimer =
        CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kFlashSeconds, 0, [this] { setHighlighted(false); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mFlashTimer.get(), kCFRunLoopCommonModes);
}

NSRect NSButton::focusRingBounds() const { return buttonCell() ? buttonCell()->boxRect(bounds()) : NSRect{}; }
CGFloat NSButton::focusRingRadius() const { return buttonCell() ? buttonCell()->boxCornerRadius() : 0; }
