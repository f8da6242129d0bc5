#pragma once

/// The value of a slider within its range, and how the slider looks.
///
/// A value outside the range becomes the nearest end, but one that is outside by at most 1e-7 of the range is held as
/// given. Infinities become the ends; not-a-number is ignored. In a range of 0 to 100, 101 is held as 100 and
/// 100.000001 as it is.

#include "AppKit/NSActionCell.h"
#include "AppKit/NSAppearance.h"

class NSSliderCell : public NSActionCell {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    NSSliderCell();
    /// Reads minValue (0), maxValue (1), doubleValue besides what every cell reads.
    bool initWithCoder(NSCoder& coder) override;

    void setObjectValue(NSObject* value) override; ///< anything that isn't a number counts as 0
    void setDoubleValue(double value) override;
    void setFloatValue(float value) override { setDoubleValue(static_cast<double>(value)); }
    void setIntValue(int value) override { setDoubleValue(value); }

    // Ends that aren't finite are ignored. The value follows into a changed range; where the minimum lies above the
    // maximum, the maximum wins.
    double minValue() const { return mMinValue; }
    void setMinValue(double value);
    double maxValue() const { return mMaxValue; }
    void setMaxValue(double value);
    double constrainedValue(double value) const; ///< what the rule above makes of a value

    bool isVertical() const { return mVertical; }
    void setVertical(bool vertical) { mVertical = vertical; }

    /// Where the knob's centre stands for a value, in a slider with these bounds; the smallest value is left or at the
    /// bottom.
    NSPoint knobCenterForValue(double value, NSRect bounds) const;
    /// How much of the range one point of travel is.
    double valuePerPoint(NSRect bounds) const;

    void drawWithFrame(NSRect frame, NSView& view) override;

    static constexpr CGFloat kShadow = 2; ///< around the knob
    /// How far from its centre a knob is drawn: it stands on whole pixels, and half of one is two points at the least
    /// scale, a quarter.
    static constexpr CGFloat kKnobReach = NSMetrics::knobRadius + kShadow + 2;

private:
    double fractionOfRange(double value) const; ///< 0 to 1

    double mMinValue = 0;
    double mMaxValue = 1;
    bool mVertical = false;
};
