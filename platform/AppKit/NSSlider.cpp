#include "AppKit/NSSlider.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"
#include "Foundation/NSKeyValueBinding.h"

#include <cmath>

NS_CLASS_TABLE(NSSlider, NSActionControl, "")
    .key("minValue", &NSSlider::minValue, &NSSlider::setMinValue)
        .key("maxValue", &NSSlider::maxValue, &NSSlider::setMaxValue)
NS_CLASS_TABLE_END

namespace {

constexpr double kFineFactor = 0.1;  ///< of the travel, while Shift is held
constexpr double kWheelNotch = 0.01; ///< of the range

bool IsTall(NSRect frame) { return frame.size.height > frame.size.width; }

} // namespace

RetainPtr<NSCell> NSSlider::makeCell() const { return make<NSSliderCell>(); }
NSSliderCell* NSSlider::sliderCell() const { return asKind<NSSliderCell>(cell()); }

bool NSSlider::initWithFrame(NSRect frame)
{
    if (!NSActionControl::initWithFrame(frame)) return false;
    setVertical(IsTall(frame));
    return true;
}

bool NSSlider::initWithCoder(NSCoder& coder)
{
    if (!NSActionControl::initWithCoder(coder)) return false;
    setVertical(coder.decodeBoolForKey("vertical", IsTall(frame())));
    return true;
}

// --- range and looks

double NSSlider::minValue() const { return sliderCell() ? sliderCell()->minValue() : 0; }
double NSSlider::maxValue() const { return sliderCell() ? sliderCell()->maxValue() : 0; }

void NSSlider::setMinValue(double value)
{
    if (!sliderCell()) return;
    willChangeValueForKey("minValue");
    sliderCell()->setMinValue(value);
    didChangeValueForKey("minValue");
    setNeedsDisplay();
}

void NSSlider::setMaxValue(double value)
{
    if (!sliderCell()) return;
    willChangeValueForKey("maxValue");
    sliderCell()->setMaxValue(value);
    didChangeValueForKey("maxValue");
    setNeedsDisplay();
}

bool NSSlider::isVertical() const { return sliderCell() && sliderCell()->isVertical(); }

void NSSlider::setVertical(bool vertical)
{
    if (sliderCell()) sliderCell()->setVertical(vertical);
    setNeedsDisplay();
}

bool NSSlider::isContinuous() const { return cell() && cell()->isContinuous(); }

void NSSlider::setContinuous(bool continuous)
{
    if (cell()) cell()->setContinuous(continuous);
}

NSPoint NSSlider::knobCenterForValue(double value) const
{
    return sliderCell() ? sliderCell()->knobCenterForValue(value, bounds()) : NSPoint{};
}

NSRect NSSlider::knobRect() const { return CGSquareAround(knobCenterForValue(doubleValue()), NSMetrics::knobRadius); }

NSRect NSSlider::valueRect() const
{
    if (!sliderCell()) return bounds();
    return CGSquareAround(knobCenterForValue(doubleValue()), NSSliderCell::kKnobReach);
}

NSRect NSSlider::focusRingBounds() const { return knobRect(); }
CGFloat NSSlider::focusRingRadius() const { return NSMetrics::knobRadius; }

// --- value

bool NSSlider::changeCellValue(double value)
{
    if (!cell()) return false;
    const double old = cell()->doubleValue();
    const NSRect before = valueRect();
    cell()->setDoubleValue(value);
    if (cell()->doubleValue() == old) return false;
    setNeedsDisplayInRect(CGRectUnion(before, valueRect()));
    writeBoundValue(cell()->doubleValue());
    return true;
}

void NSSlider::writeBoundValue(double value)
{
    const NSDictionary* info = infoForBinding(NSValueBinding);
    if (!info) return;
    const RetainPtr<NSObject> object = info->objectForKey(NSObservedObjectKey);
    const RetainPtr<NSString> keyPath = asKind<NSString>(info->objectForKey(NSObservedKeyPathKey));
    if (object && keyPath) object->setValueForKeyPath(NSNumber::numberWithDouble(value).get(), keyPath);
}

// --- tracking

CGFloat NSSlider::positionAlongTrack(const NSEvent& event) const
{
    const NSPoint point = localPoint(event);
    return isVertical() ? -point.y : point.x;
}

void NSSlider::mouseDown(NSEvent& event)
{
    const RetainPtr<NSSlider> self = this;
    const RetainPtr<NSWindow> in = window();
    if (!isEnabled() || !in || !sliderCell()) return trackingDidEnd(false);
    in->beginTracking(this);
    if (in->trackingView() != this) return trackingDidEnd(false); // a window that has closed tracks nothing
    mTracking = true;
    mActionPending = false;
    mValueAtPress = doubleValue();
    setHighlighted(true);

    mLastPointer = positionAlongTrack(event);
    mDrag = {mLastPointer, doubleValue(), (event.modifierFlags() & NSShiftKeyMask) != 0};
    const NSRect knob = knobRect();
    if (CGRectContainsPoint(CGRectInset(knob, -1, -1), localPoint(event))) return;
    const CGFloat center = isVertical() ? -CGRectGetMidY(knob) : CGRectGetMidX(knob);
    mDrag.value += (mDrag.pointer - center) * sliderCell()->valuePerPoint(bounds());
    moveTo(insideRange(mDrag.value));
}

void NSSlider::mouseDragged(NSEvent& event)
{
    if (!mTracking || !isEnabled() || !sliderCell()) return;
    const CGFloat pointer = positionAlongTrack(event);
    const bool fine = (event.modifierFlags() & NSShiftKeyMask) != 0;
    // the way changes where the last move ended, so that pressing or releasing Shift moves nothing by itself
    if (fine != mDrag.fine) mDrag = {mLastPointer, doubleValue(), fine};
    mLastPointer = pointer;

    const CGFloat travel = (pointer - mDrag.pointer) * (fine ? kFineFactor : 1);
    // without travel the value stays as it was given, also where that is a little outside of the range
    moveTo(travel == 0 ? mDrag.value : insideRange(mDrag.value + travel * sliderCell()->valuePerPoint(bounds())));
}

void NSSlider::mouseUp(NSEvent& event) { mouseDragged(event); }

void NSSlider::trackingDidEnd(bool)
{
    mTracking = false;
    setHighlighted(false);
    if (std::exchange(mActionPending, false)) sendAction(action(), target());
}

bool NSSlider::abandonTracking()
{
    const RetainPtr<NSSlider> keep(this);
    if (!mTracking) return false;
    moveTo(mValueAtPress);
    mActionPending = false;
    return true;
}

double NSSlider::insideRange(double value) const { return std::min(std::max(value, minValue()), maxValue()); }

void NSSlider::moveTo(double value)
{
    if (!changeCellValue(value)) return;
    if (mTracking && !isContinuous()) {
        mActionPending = true;
        return;
    }
    sendAction(action(), target());
}

void NSSlider::scrollWheel(NSEvent& event)
{
    if (!isEnabled() || mTracking || !sliderCell()) return;
    const RetainPtr<NSSlider> self = this;
    const CGFloat notches = event.scrollingDeltaY() - event.scrollingDeltaX();
    if (notches != 0) moveTo(insideRange(doubleValue() + notches * kWheelNotch * (maxValue() - minValue())));
}
