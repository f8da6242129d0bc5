#pragma once

/// A slider with keyboard steps, a default value, and notifications that frame a drag.
///
/// Values and steps are in slider units, the units of `doubleValue`, `minValue` and `maxValue`; a subclass may show
/// another quantity. Nothing is reported: a value binding that lacks its key path or object makes a change go nowhere.
///
/// | key                | moves by                | with Command             |
/// |--------------------|-------------------------|--------------------------|
/// | Up, Down           | + or - smallStep        | to maximum or minimum    |
/// | Right, Left        | + or - smallStep; on a vertical slider the other way round | likewise |
/// | Page Up, Page Down | + or - largeStep        | the same                 |
/// | Home, End          | to maximum, to minimum  | the same                 |
///
/// A double click restores the default value. The wheel moves by small steps, up and right raise the value; not during
/// a drag. A disabled slider ignores drags and the wheel; presses on it are still framed by the two notifications, and
/// double clicks and keys still work.

#include "AppKit/NSSlider.h"

class NSDictionary;

/// Posted to the default notification centre, with the slider as object: before a press is tracked, and after tracking
/// ended.
inline constexpr const char* ZeSliderMouseDownNotification = "ZeSliderMouseDownNotification";
inline constexpr const char* ZeSliderMouseUpNotification = "ZeSliderMouseUpNotification";

class ZeSlider : public NSSlider {
public:
    NS_CLASS(ZeSlider)

    // Hooks for subclasses, nothing else: sliderInit, valueDidChange, changeValueBy.

    /// Sets the defaults: both steps 1.0, the default value what the slider holds now, the slider its own target.
    virtual void sliderInit();
    /// Called after every change that goes through this class.
    virtual void valueDidChange() {}
    /// Moves the value by `delta`, in slider units here.
    virtual void changeValueBy(double delta);

    bool initWithFrame(NSRect frame) override;
    bool initWithCoder(NSCoder& coder) override;

    double smallStep() const { return smallStep_; }
    void setSmallStep(double step) { smallStep_ = step; }
    double largeStep() const { return largeStep_; }
    void setLargeStep(double step) { largeStep_ = step; }
    double defaultValue() const { return defaultValue_; }
    void setDefaultValue(double value) { defaultValue_ = value; }
    /// Whether a click makes the slider the first responder of its window; true at first.
    bool becomeFirstResponderOnClick() const { return becomeFirstResponderOnClick_; }
    void setBecomeFirstResponderOnClick(bool becomes) { becomeFirstResponderOnClick_ = becomes; }

    void sliderChanged(NSObject* sender);
    void setDoubleValue(double value) override;

    /// The description of the value binding; null when the value isn't bound.
    NSDictionary* getValueBinding() const;
    /// The setter of what a person does: a bound slider gives the value, clamped to its range, to the bound object; an
    /// unbound one takes it itself. Sends the action when the value differs from the one before.
    void setBoundObjectValue(double value);

    void keyDown(NSEvent& event) override;
    void mouseDown(NSEvent& event) override;
    void scrollWheel(NSEvent& event) override;
    void trackingDidEnd(bool byRelease) override;

protected:
    /// Sends the cell's action, where it has one, to the target.
    void sendActionToTarget();

private:
    bool handleKey(unichar key, bool command);
    void pushToBoundObject(NSDictionary& binding, double& value);

    double smallStep_ = 0;
    double largeStep_ = 0;
    double defaultValue_ = 0;
    bool becomeFirstResponderOnClick_ = false;
};
