#pragma once

/// A slider: a knob on a track.
///
/// A press on the knob takes hold of it where it is, a press on the track brings the knob there; then the drag moves
/// it, with Shift held by a tenth of the way. While it moves, the cell's value is set (never the virtual
/// `setDoubleValue`), a bound value is written, and the action is sent with each change; a slider that isn't continuous
/// sends it once, at the release.
///
/// Every press ends in `trackingDidEnd`, also one that tracked nothing because the slider is disabled or in no window;
/// subclasses override it (base first) to do what follows a drag.

#include "AppKit/NSActionControl.h"
#include "AppKit/NSSliderCell.h"

class NSSlider : public NSActionControl {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    bool initWithFrame(NSRect frame) override; ///< vertical when taller than wide
    /// Vertical as described (`vertical`), otherwise as its frame says.
    bool initWithCoder(NSCoder& coder) override;
    RetainPtr<NSCell> makeCell() const override;

    // The range; see NSSliderCell. Changes are announced to observers of "minValue" and "maxValue".
    double minValue() const;
    void setMinValue(double value);
    double maxValue() const;
    void setMaxValue(double value);

    bool isVertical() const;
    void setVertical(bool vertical);
    bool isContinuous() const;
    void setContinuous(bool continuous); ///< true at first

    // In this view's coordinates, so that a scale beside the slider can stand where the knob will.
    NSPoint knobCenterForValue(double value) const;
    NSRect knobRect() const;
    NSRect valueRect() const override; ///< the knob with its shadow

    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void trackingDidEnd(bool byRelease) override;
    bool abandonTracking() override;
    /// A hundredth of the range a notch; up and right raise the value. Nothing while disabled or tracked.
    void scrollWheel(NSEvent& event) override;

    NSRect focusRingBounds() const override;
    CGFloat focusRingRadius() const override;

private:
    struct Drag {
        CGFloat pointer = 0; ///< where the pointer was when this way of dragging began, along the track
        double value = 0;    ///< and the value then
        bool fine = false;
    };

    NSSliderCell* sliderCell() const;
    CGFloat positionAlongTrack(const NSEvent& event) const; ///< grows with the value
    double insideRange(double value) const;
    /// Sets the cell's value and the bound one, and redraws; sends nothing. @return whether the value changed
    bool changeCellValue(double value);
    void moveTo(double value);
    void writeBoundValue(double value);

    Drag mDrag;
    CGFloat mLastPointer = 0;
    bool mTracking = false;
    bool mActionPending = false;
    double mValueAtPress = 0;
};
