#pragma once

/// A control over an `NSActionCell`: what presses and the pointer above it do to its looks.

#include "AppKit/NSActionCell.h"
#include "AppKit/NSControl.h"

class NSActionControl : public NSControl {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    bool isHighlighted() const;
    void setEnabled(bool enabled) override; ///< a control that is switched off isn't drawn pressed

    void mouseEntered(NSEvent& event) override;
    void mouseExited(NSEvent& event) override;

protected:
    NSActionCell* actionCell() const; ///< null when the control has been given another kind of cell
    void setHighlighted(bool highlighted);
    NSPoint localPoint(const NSEvent& event) const;
    bool containsEvent(const NSEvent& event) const;
    /// What a press does first: it takes the keyboard, then the window tracks this control.
    /// @return false where the control is disabled, in no window, or an edit elsewhere refuses to end
    bool beginPress();
};
