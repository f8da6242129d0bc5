#include "Slider/ZeParameterSetter.h"

#include "Foundation/NSArray.h"
#include "Foundation/NSNotification.h"
#include "Slider/ZeSlider.h"

NS_CLASS_TABLE(ZeParameterSetter, NSObject, "")
    .action("handleSliderMouseDown:", &ZeParameterSetter::handleSliderMouseDown)
        .action("handleSliderMouseUp:", &ZeParameterSetter::handleSliderMouseUp)
NS_CLASS_TABLE_END

bool ZeParameterSetter::initWithAudioUnit(AudioUnit unit, AUEventListenerRef listener,
                                          const AudioUnitParameterID* parameterIDs, unsigned count)
{
    if (!init()) return false;
    m_pListener = listener;
    m_events = make<NSMutableDictionary>();
    m_sliders = make<NSMutableDictionary>();
    for (unsigned i = 0; i < count; ++i) {
        AudioUnitEvent event{};
        event.mEventType = kAudioUnitEvent_ParameterValueChange;
        event.mArgument.mParameter = {unit, parameterIDs[i], kAudioUnitScope_Global, 0};
        m_events->setObject(NSValue::value(&event, kAudioUnitEventEncoding).get(),
                            NSNumber::numberWithUnsignedInt(parameterIDs[i]).get());
    }
    return true;
}

void ZeParameterSetter::addZeSlider(ZeSlider* slider, AudioUnitParameterID parameter)
{
    if (!slider) return;
    m_sliders->setObject(slider, NSNumber::numberWithUnsignedInt(parameter).get());
    auto* center = NSNotificationCenter::defaultCenter();
    center->addObserver(this, "handleSliderMouseDown:", NSString::string(ZeSliderMouseDownNotification).get(), slider);
    center->addObserver(this, "handleSliderMouseUp:", NSString::string(ZeSliderMouseUpNotification).get(), slider);
}

void ZeParameterSetter::setParameter(AudioUnitParameterID parameter, float value, NSObject* sender)
{
    setParameter(parameter, value, sender, 0, kAudioUnitScope_Global);
}

void ZeParameterSetter::setParameter(AudioUnitParameterID parameter, float value, NSObject* sender,
                                     AudioUnitElement element, AudioUnitScope scope)
{
    const RetainPtr<ZeParameterSetter> keep(this); // the unit, once told, may have its editor closed or bound anew
    AudioUnitEvent event{};
    if (!copyEvent(NSNumber::numberWithUnsignedInt(parameter).get(), event)) return;

    const bool framesItself = isRegisteredSlider(sender);
    if (!framesItself) notify(event, kAudioUnitEvent_BeginParameterChangeGesture, sender);

    if (scope == kAudioUnitScope_Global && element == 0) {
        AUParameterSet(m_pListener, sender, &event.mArgument.mParameter, value, 0);
    } else {
        AudioUnitSetParameter(event.mArgument.mParameter.mAudioUnit, parameter, scope, element, value, 0);
        notify(event, kAudioUnitEvent_ParameterValueChange, sender);
    }

    if (!framesItself) notify(event, kAudioUnitEvent_EndParameterChangeGesture, sender);
}

void ZeParameterSetter::handleSliderMouseDown(NSNotification* notification)
{
    notifySliderGesture(notification, kAudioUnitEvent_BeginParameterChangeGesture);
}

void ZeParameterSetter::handleSliderMouseUp(NSNotification* notification)
{
    notifySliderGesture(notification, kAudioUnitEvent_EndParameterChangeGesture);
}

void ZeParameterSetter::notifySliderGesture(const NSNotification* notification, AudioUnitEventType type) const
{
    NSObject* slider = notification ? notification->object() : nullptr;
    const RetainPtr<NSArray> keys = m_sliders->allKeysForObject(slider);
    AudioUnitEvent event{};
    if (keys->count() > 0 && copyEvent(keys->objectAtIndex(keys->count() - 1), event)) notify(event, type, slider);
}

bool ZeParameterSetter::copyEvent(const NSObject* key, AudioUnitEvent& event) const
{
    const auto* stored = asKind<NSValue>(m_events->objectForKey(key));
    if (stored) stored->getValue(&event);
    return stored != nullptr;
}

bool ZeParameterSetter::isRegisteredSlider(const NSObject* object) const
{
    return m_sliders->allKeysForObject(object)->count() > 0;
}

void ZeParameterSetter::notify(AudioUnitEvent event, AudioUnitEventType type, NSObject* sender) const
{
    event.mEventType = type;
    AUEventListenerNotify(m_pListener, sender, &event);
}

void ZeParameterSetter::dealloc()
{
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    m_events.reset();
    m_sliders.reset();
    NSObject::dealloc();
}
