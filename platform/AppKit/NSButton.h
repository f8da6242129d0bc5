#pragma once

/// A push button, a check box, or a round help button.
///
/// A click that is released inside, Space, and on a push button also Return: change the state of a check box, then send
/// the action.

#include "AppKit/NSActionControl.h"
#include "AppKit/NSButtonCell.h"
#include "CoreFoundation/CFRunLoop.h"

class NSButton : public NSActionControl {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    ~NSButton() override;
    RetainPtr<NSCell> makeCell() const override;

    void setButtonType(NSButtonType type);
    void setBezelStyle(NSBezelStyle style);
    int state() const;
    void setState(int state);
    const NSString* title() const;
    void setTitle(const NSString* title);
    /// What a click does. Nothing while disabled.
    void performClick(NSObject* sender);

    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void trackingDidEnd(bool byRelease) override;
    void keyDown(NSEvent& event) override;

    NSRect focusRingBounds() const override;
    CGFloat focusRingRadius() const override;

private:
    NSButtonCell* buttonCell() const;
    void flash(); ///< looks pressed for a moment

    RetainPtr<CFRunLoopTimer> mFlashTimer;
};
