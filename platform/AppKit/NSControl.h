#pragma once

/// A view with a cell that a person changes and that sends an action.
///
/// A press starts tracking: the window routes drags and the release here. Tracking sets the cell's value, never the
/// control's virtual setters, and ends in `trackingDidEnd`. A disabled control tracks nothing and Tab skips it.

#include "AppKit/NSCell.h"
#include "AppKit/NSView.h"

class NSControl : public NSView {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    bool initWithFrame(NSRect frame) override;   ///< makes the cell with `makeCell()` unless one is there
    bool initWithCoder(NSCoder& coder) override; ///< makes the described cell first

    NSCell* cell() const { return mCell; }
    void setCell(NSCell* cell);
    virtual RetainPtr<NSCell> makeCell() const; ///< of the class this control uses

    virtual NSObject* objectValue() const;
    virtual void setObjectValue(NSObject* value);
    virtual double doubleValue() const;
    virtual void setDoubleValue(double value);
    virtual float floatValue() const;
    virtual void setFloatValue(float value);
    virtual int intValue() const;
    virtual void setIntValue(int value);
    virtual RetainPtr<NSString> stringValue() const;
    virtual void setStringValue(const NSString* value);
    NSFormatter* formatter() const;
    virtual void setFormatter(NSFormatter* formatter);

    bool isEnabled() const;
    virtual void setEnabled(bool enabled);
    NSObject* target() const;
    void setTarget(NSObject* target);
    SEL action() const;
    void setAction(SEL action);
    /// Sends the action to the target with this control as argument. @return false without action or target
    bool sendAction(SEL action, NSObject* target);

    bool acceptsFirstResponder() const override { return isEnabled(); }
    void drawRect(NSRect dirty) override;
    /// What looks different with another value, in this view's coordinates; what lies between where it was and where
    /// it is then looks different too. All of the view at first.
    virtual NSRect valueRect() const { return bounds(); }

    void setValueForBinding(NSObject* value, const char* binding) override; ///< "value": setObjectValue

protected:
    /// Calls `change(NSCell&)`, and has drawn what it changes.
    template <typename Change> void changeValue(const Change& change)
    {
        const NSRect before = valueRect();
        if (mCell) change(*mCell);
        setNeedsDisplayInRect(CGRectUnion(before, valueRect()));
    }

private:
    RetainPtr<NSCell> mCell;
};
