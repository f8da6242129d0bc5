#include "AppKit/NSStepper.h"

#include "AppKit/NSAppearance.h"
#include "Foundation/NSClass.h"

#include <cmath>

NS_CLASS_TABLE(NSStepper, NSActionControl, "")
    .key("minValue", &NSStepper::minValue, &NSStepper::setMinValue)
        .key("maxValue", &NSStepper::maxValue, &NSStepper::setMaxValue)
        .key("increment", &NSStepper::increment, &NSStepper::setIncrement)
NS_CLASS_TABLE_END

namespace {
constexpr CFTimeInterval kRepeatDelay = 0.5;
constexpr CFTimeInterval kRepeatInterval = 0.1;
} // namespace

NSStepper::~NSStepper() { stopRepeating(); }

RetainPtr<NSCell> NSStepper::makeCell() const { return make<NSStepperCell>(); }
NSStepperCell* NSStepper::stepperCell() const { return asKind<NSStepperCell>(cell()); }

double NSStepper::minValue() const { return stepperCell() ? stepperCell()->minValue() : 0; }
double NSStepper::maxValue() const { return stepperCell() ? stepperCell()->maxValue() : 0; }
double NSStepper::increment() const { return stepperCell() ? stepperCell()->increment() : 0; }
bool NSStepper::valueWraps() const { return stepperCell() && stepperCell()->valueWraps(); }
bool NSStepper::autorepeat() const { return stepperCell() && stepperCell()->autorepeat(); }

void NSStepper::setMinValue(double value)
{
    if (stepperCell()) stepperCell()->setMinValue(value);
}

void NSStepper::setMaxValue(double value)
{
    if (stepperCell()) stepperCell()->setMaxValue(value);
}

void NSStepper::setIncrement(double increment)
{
    if (stepperCell()) stepperCell()->setIncrement(increment);
}

void NSStepper::setValueWraps(bool wraps)
{
    if (stepperCell()) stepperCell()->setValueWraps(wraps);
}

void NSStepper::setAutorepeat(bool autorepeat)
{
    if (stepperCell()) stepperCell()->setAutorepeat(autorepeat);
}

void NSStepper::step(int steps)
{
    if (!isEnabled() || !stepperCell()) return;
    const RetainPtr<NSStepper> self = this;
    const double old = stepperCell()->doubleValue();
    stepperCell()->setDoubleValue(stepperCell()->valueAfterSteps(steps));
    if (stepperCell()->doubleValue() != old) sendAction(action(), target());
}

// --- mouse

int NSStepper::halfAt(NSPoint point) const
{
    if (!CGRectContainsPoint(bounds(), point)) return 0;
    return point.y < CGRectGetMidY(bounds()) ? 1 : -1;
}

void NSStepper::setPressedHalf(int direction)
{
    if (!stepperCell() || stepperCell()->pressedHalf() == direction) return;
    stepperCell()->setPressedHalf(direction);
    setNeedsDisplay();
}

void NSStepper::mouseDown(NSEvent& event)
{
    const RetainPtr<NSStepper> self = this;
    if (!beginPress()) return;
    mDirection = halfAt(localPoint(event));
    setPressedHalf(mDirection);
    if (autorepeat()) startRepeating(); // first, since the action may end the tracking
    step(mDirection);
}

void NSStepper::mouseDragged(NSEvent& event)
{
    setPressedHalf(mDirection != 0 && halfAt(localPoint(event)) == mDirection ? mDirection : 0);
}

void NSStepper::trackingDidEnd(bool)
{
    mDirection = 0;
    stopRepeating();
    setPressedHalf(0);
}

void NSStepper::startRepeating()
{
    stopRepeating();
    mRepeatTimer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kRepeatDelay, kRepeatInterval, [this] {
        if (stepperCell() && stepperCell()->pressedHalf() != 0) step(mDirection);
    });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mRepeatTimer.get(), kCFRunLoopCommonModes);
}

void NSStepper::stopRepeating()
{
    CFRunLoopTimerInvalidate(mRepeatTimer.get());
    mRepeatTimer = nullptr;
}

// --- keyboard and wheel

void NSStepper::keyDown(NSEvent& event)
{
    switch (event.keyCharacter()) {
    case NSUpArrowFunctionKey:
        return step(1);
    case NSDownArrowFunctionKey:
        return step(-1);
    default:
        return NSActionControl::keyDown(event);
    }
}

void NSStepper::scrollWheel(NSEvent& event)
{
    // fine wheels send parts of a notch
    mWheelRest = std::clamp(mWheelRest + event.scrollingDeltaY(), -100.0, 100.0);
    const double whole = std::trunc(mWheelRest);
    mWheelRest -= whole;
    if (whole != 0) step(static_cast<int>(whole));
}

NSRect NSStepper::focusRingBounds() const { return bounds(); }
CGFloat NSStepper::focusRingRadius() const { return NSMetrics::controlCornerRadius; }
