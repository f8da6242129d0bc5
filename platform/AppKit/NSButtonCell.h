#pragma once

/// State and looks of a button. A check box's value is its state: anything above 0 is on.

#include "AppKit/NSActionCell.h"

enum NSButtonType { NSMomentaryPushInButton, NSSwitchButton };
enum NSBezelStyle { NSRoundedBezelStyle, NSHelpButtonBezelStyle };

class NSButtonCell : public NSActionCell {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    NSButtonCell();
    /// Reads type ("check" for a check box), bezelStyle ("helpButton"), state ("on") besides what every cell reads.
    bool initWithCoder(NSCoder& coder) override;

    void setObjectValue(NSObject* value) override;

    NSButtonType buttonType() const { return mType; }
    void setButtonType(NSButtonType type) { mType = type; }
    NSBezelStyle bezelStyle() const { return mBezelStyle; }
    void setBezelStyle(NSBezelStyle style) { mBezelStyle = style; }
    int state() const { return intValue(); } ///< NSOnState or NSOffState
    void setState(int state);
    /// What a click does to the state: a check box changes, others stay.
    void setNextState();

    /// The box of a check box, the circle of a help button, the bezel of others.
    NSRect boxRect(NSRect frame) const;
    CGFloat boxCornerRadius() const;
    void drawWithFrame(NSRect frame, NSView& view) override;

private:
    void drawCheckBox(NSRect frame, bool focused) const;
    void drawBezel(NSRect frame, bool focused) const;

    NSButtonType mType = NSMomentaryPushInButton;
    NSBezelStyle mBezelStyle = NSRoundedBezelStyle;
};
