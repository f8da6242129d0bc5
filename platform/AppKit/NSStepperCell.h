#pragma once

/// Value, range and looks of a stepper. A value outside the range becomes the nearest end; not-a-number is ignored.

#include "AppKit/NSActionCell.h"

class NSStepperCell : public NSActionCell {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    NSStepperCell();
    /// Reads minValue (0), maxValue (59), increment (1), doubleValue, valueWraps (no), autorepeat (yes).
    bool initWithCoder(NSCoder& coder) override;

    void setObjectValue(NSObject* value) override;
    void setDoubleValue(double value) override;
    void setFloatValue(float value) override { setDoubleValue(static_cast<double>(value)); }
    void setIntValue(int value) override { setDoubleValue(value); }

    double minValue() const { return mMinValue; }
    void setMinValue(double value);
    double maxValue() const { return mMaxValue; }
    void setMaxValue(double value);
    double increment() const { return mIncrement; }
    void setIncrement(double increment) { mIncrement = increment; }
    bool valueWraps() const { return mValueWraps; } ///< a step past one end arrives at the other
    void setValueWraps(bool wraps) { mValueWraps = wraps; }
    bool autorepeat() const { return mAutorepeat; } ///< a held button goes on stepping
    void setAutorepeat(bool autorepeat) { mAutorepeat = autorepeat; }

    /// The value `steps` increments from here: 58 in a range of 0 to 59 gives 59 after 1 step and 0 after 2, if it
    /// wraps.
    double valueAfterSteps(int steps) const;

    /// +1 draws the upper half pressed, -1 the lower one.
    void setPressedHalf(int direction) { mPressedHalf = direction; }
    int pressedHalf() const { return mPressedHalf; }
    void drawWithFrame(NSRect frame, NSView& view) override;

private:
    double mMinValue = 0;
    double mMaxValue = 59;
    double mIncrement = 1;
    bool mValueWraps = false;
    bool mAutorepeat = true;
    int mPressedHalf = 0;
};
