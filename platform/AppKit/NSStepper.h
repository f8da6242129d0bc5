#pragma once

/// Two small buttons that step a value up and down: by the mouse, the arrow keys and the wheel.
///
/// A press steps at once; while it is held over its half it goes on after 0.5 s, every 0.1 s. Each step that changes
/// the value sends the action.

#include "AppKit/NSActionControl.h"
#include "AppKit/NSStepperCell.h"
#include "CoreFoundation/CFRunLoop.h"

class NSStepper : public NSActionControl {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    ~NSStepper() override;
    RetainPtr<NSCell> makeCell() const override;

    // See NSStepperCell.
    double minValue() const;
    void setMinValue(double value);
    double maxValue() const;
    void setMaxValue(double value);
    double increment() const;
    void setIncrement(double increment);
    bool valueWraps() const;
    void setValueWraps(bool wraps);
    bool autorepeat() const;
    void setAutorepeat(bool autorepeat);

    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void trackingDidEnd(bool byRelease) override;
    void keyDown(NSEvent& event) override;
    void scrollWheel(NSEvent& event) override;

    NSRect focusRingBounds() const override;
    CGFloat focusRingRadius() const override;

private:
    NSStepperCell* stepperCell() const;
    int halfAt(NSPoint point) const; ///< +1, -1, or 0 outside
    void setPressedHalf(int direction);
    void step(int steps);
    void startRepeating();
    void stopRepeating();

    int mDirection = 0; ///< of the press that is being tracked
    CGFloat mWheelRest = 0;
    RetainPtr<CFRunLoopTimer> mRepeatTimer;
};
