#include "AppKit/NSStepperCell.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

#include <cmath>

NS_CLASS_TABLE(NSStepperCell, NSActionCell, "")
NS_CLASS_TABLE_END

NSStepperCell::NSStepperCell() { NSStepperCell::setDoubleValue(0); }

bool NSStepperCell::initWithCoder(NSCoder& coder)
{
    if (!NSActionCell::initWithCoder(coder)) return false;
    setMinValue(coder.decodeDoubleForKey("minValue", 0));
    setMaxValue(coder.decodeDoubleForKey("maxValue", 59));
    setIncrement(coder.decodeDoubleForKey("increment", 1));
    setDoubleValue(coder.decodeDoubleForKey("doubleValue", 0));
    mValueWraps = coder.decodeBoolForKey("valueWraps", false);
    mAutorepeat = coder.decodeBoolForKey("autorepeat", true);
    return true;
}

void NSStepperCell::setDoubleValue(double value)
{
    if (std::isnan(value)) return;
    const double held = std::min(std::max(value, mMinValue), mMaxValue);
    NSActionCell::setObjectValue(NSNumber::numberWithDouble(held).get());
}

void NSStepperCell::setObjectValue(NSObject* value)
{
    const auto* number = asKind<NSNumber>(value);
    setDoubleValue(number ? number->doubleValue() : 0);
}

void NSStepperCell::setMinValue(double value)
{
    if (std::isnan(value)) return;
    mMinValue = value;
    NSStepperCell::setDoubleValue(doubleValue());
}

void NSStepperCell::setMaxValue(double value)
{
    if (std::isnan(value)) return;
    mMaxValue = value;
    NSStepperCell::setDoubleValue(doubleValue());
}

double NSStepperCell::valueAfterSteps(int steps) const
{
    const double value = doubleValue() + steps * mIncrement;
    if (value > mMaxValue) return mValueWraps ? mMinValue : mMaxValue;
    if (value < mMinValue) return mValueWraps ? mMaxValue : mMinValue;
    return value;
}

void NSStepperCell::drawWithFrame(NSRect frame, NSView& view)
{
    using enum NSAppearanceColorName;
    const CGContextRef context = NSGraphicsContext::currentContext();
    const auto resting = isHovered() ? fieldHoverBorderColor : fieldBorderColor;
    const auto border = NSShowsFocus(view) ? controlAccentColor : resting;
    NSDrawBox(context, frame,
              {isEnabled() ? fieldColor : disabledFieldColor, isEnabled() ? border : disabledFieldBorderColor});
    const CGFloat half = frame.size.height / 2;
    if (mPressedHalf != 0) {
        const ScopedGState state(context);
        const CGFloat top = mPressedHalf > 0 ? frame.origin.y : frame.origin.y + half;
        CGContextClipToRect(context, CGRectMake(frame.origin.x, top, frame.size.width, half));
        NSFillRounded(context, CGRectInset(frame, 1, 1), NSMetrics::controlCornerRadius - 1, fieldPressedColor);
    }
    const auto mark = isEnabled() ? secondaryLabelColor : disabledControlTextColor;
    const CGFloat x = CGRectGetMidX(frame), middle = CGRectGetMidY(frame);
    NSDrawChevron(context, {x, middle - half / 2 + 0.5}, NSChevron::up, mark);
    NSDrawChevron(context, {x, middle + half / 2 - 0.5}, NSChevron::down, mark);
}
