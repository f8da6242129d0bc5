#include "Slider/ZeSlider.h"

#include "AppKit/NSWindow.h"
#include "Foundation/NSDictionary.h"
#include "Foundation/NSKeyValueBinding.h"
#include "Foundation/NSNotification.h"

NS_CLASS_TABLE(ZeSlider, NSSlider, "")
    .action("sliderChanged:", &ZeSlider::sliderChanged)
        .key("smallStep", &ZeSlider::smallStep, &ZeSlider::setSmallStep)
        .key("largeStep", &ZeSlider::largeStep, &ZeSlider::setLargeStep)
        .key("defaultValue", &ZeSlider::defaultValue, &ZeSlider::setDefaultValue)
        .key("becomeFirstResponderOnClick", &ZeSlider::becomeFirstResponderOnClick,
             &ZeSlider::setBecomeFirstResponderOnClick)
NS_CLASS_TABLE_END

namespace {

void post(const char* notification, ZeSlider* slider)
{
    NSNotificationCenter::defaultCenter()->postNotificationName(NSString::string(notification).get(), slider, nullptr);
}

RetainPtr<NSString> withoutSelf(const NSString& keyPath)
{
    static constexpr std::u16string_view kSelf = u"self.";
    std::u16string_view path = keyPath.units();
    if (path.starts_with(kSelf)) path.remove_prefix(kSelf.size());
    return NSString::string(std::u16string(path));
}

} // namespace

bool ZeSlider::initWithFrame(NSRect frame)
{
    if (!NSSlider::initWithFrame(frame)) return false;
    sliderInit();
    return true;
}

bool ZeSlider::initWithCoder(NSCoder& coder)
{
    if (!NSSlider::initWithCoder(coder)) return false;
    sliderInit();
    return true;
}

void ZeSlider::sliderInit()
{
    smallStep_ = 1.0;
    largeStep_ = 1.0;
    defaultValue_ = doubleValue();
    becomeFirstResponderOnClick_ = true;
    setTarget(this);
    setAction("sliderChanged:");
}

void ZeSlider::sliderChanged(NSObject*) { valueDidChange(); }

void ZeSlider::setDoubleValue(double value)
{
    NSSlider::setDoubleValue(value);
    valueDidChange();
}

NSDictionary* ZeSlider::getValueBinding() const { return infoForBinding(NSValueBinding); }

void ZeSlider::setBoundObjectValue(double value)
{
    const RetainPtr<ZeSlider> keep(this); // who observes the value may let go of the slider
    const double oldValue = doubleValue();
    if (NSDictionary* binding = getValueBinding())
        pushToBoundObject(*binding, value);
    else
        setDoubleValue(value);
    if (oldValue != value) sendActionToTarget();
}

void ZeSlider::pushToBoundObject(NSDictionary& binding, double& value)
{
    const auto* keyPath = asKind<NSString>(binding.objectForKey(NSObservedKeyPathKey));
    const RetainPtr<NSObject> object = binding.objectForKey(NSObservedObjectKey);
    if (!keyPath || !object) return;

    const RetainPtr<NSString> key = withoutSelf(*keyPath);
    if (value > maxValue())
        value = maxValue();
    else if (minValue() > value)
        value = minValue();
    object->setValue(NSNumber::numberWithDouble(value).get(), key);
    valueDidChange();
}

void ZeSlider::sendActionToTarget()
{
    const SEL selector = cell() ? cell()->action() : nullptr;
    const RetainPtr<NSObject> receiver = target();
    if (selector && receiver) receiver->performSelector(selector, this);
}

void ZeSlider::changeValueBy(double delta) { setBoundObjectValue(doubleValue() + delta); }

void ZeSlider::keyDown(NSEvent& event)
{
    const RetainPtr<ZeSlider> keep(this);
    const NSString* characters = event.charactersIgnoringModifiers();
    if (characters && characters->length() == 1) {
        const bool command = event.modifierFlags() & NSCommandKeyMask;
        if (!handleKey(characters->characterAtIndex(0), command)) NSSlider::keyDown(event);
    }
    valueDidChange();
}

bool ZeSlider::handleKey(unichar key, bool command)
{
    // which way an arrow points along the slider: a vertical one turns Left and Right round
    const double sideways = isVertical() ? -1.0 : 1.0;
    const struct {
        unichar key;
        double direction; ///< toward the maximum when positive
        bool toEnd;
        double step;
    } kKeys[] = {
        {NSUpArrowFunctionKey, 1.0, command, smallStep_},
        {NSDownArrowFunctionKey, -1.0, command, smallStep_},
        {NSRightArrowFunctionKey, sideways, command, smallStep_},
        {NSLeftArrowFunctionKey, -sideways, command, smallStep_},
        {NSHomeFunctionKey, 1.0, true, 0.0},
        {NSEndFunctionKey, -1.0, true, 0.0},
        {NSPageUpFunctionKey, 1.0, false, largeStep_},
        {NSPageDownFunctionKey, -1.0, false, largeStep_},
    };
    for (const auto& row : kKeys) {
        if (row.key != key) continue;
        if (row.toEnd)
            setBoundObjectValue(row.direction > 0 ? maxValue() : minValue());
        else
            changeValueBy(row.direction * row.step);
        return true;
    }
    return false;
}

void ZeSlider::mouseDown(NSEvent& event)
{
    const RetainPtr<ZeSlider> keep(this);
    if (isEnabled() && becomeFirstResponderOnClick_ && window()) window()->makeFirstResponder(this);
    if (event.clickCount() >= 2) {
        setBoundObjectValue(defaultValue_);
        return;
    }
    post(ZeSliderMouseDownNotification, this);
    NSSlider::mouseDown(event);
}

void ZeSlider::trackingDidEnd(bool byRelease)
{
    const RetainPtr<ZeSlider> keep(this);
    const auto announce = [this] {
        post(ZeSliderMouseUpNotification, this);
        valueDidChange();
    };
    try {
        NSSlider::trackingDidEnd(byRelease);
    } catch (...) {
        announce(); // a gesture that began ends, whatever the action did
        throw;
    }
    announce();
}

void ZeSlider::scrollWheel(NSEvent& event)
{
    const double notches = event.scrollingDeltaY() - event.scrollingDeltaX();
    const bool isDragged = window() && window()->trackingView() == this;
    if (isEnabled() && !isDragged && notches != 0) changeValueBy(notches * smallStep_);
}
