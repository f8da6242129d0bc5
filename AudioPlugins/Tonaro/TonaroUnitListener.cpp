#include "TonaroUnitListener.h"

#include "CoreFoundation/CFRunLoop.h"

TonaroUnitListener::TonaroUnitListener(AudioUnit unit, NSObject* object, Gestures gestures, Callback callback)
    : mUnit(unit), mObject(object), mCallback(std::move(callback))
{
    if (!unit || AUEventListenerCreate(dispatch, this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes,
                                       kTonaroListenerSeconds, kTonaroListenerSeconds, &mListener) != noErr)
        return;
    for (AudioUnitParameterID id = 0; id < kParamCount; ++id) {
        AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange, {.mParameter = addressOf(id)}};
        listenTo(event);
        if (gestures == Gestures::no) continue;
        event.mEventType = kAudioUnitEvent_BeginParameterChangeGesture;
        listenTo(event);
        event.mEventType = kAudioUnitEvent_EndParameterChangeGesture;
        listenTo(event);
    }
    listenTo({kAudioUnitEvent_PropertyChange,
              {.mProperty = {mUnit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0}}});
}

TonaroUnitListener::~TonaroUnitListener()
{
    if (mListener) AUListenerDispose(mListener);
}

void TonaroUnitListener::listenTo(const AudioUnitEvent& event)
{
    AUEventListenerAddEventType(mListener, mObject, &event);
}

void TonaroUnitListener::dispatch(void* self, void*, const AudioUnitEvent* event, std::uint64_t, float value)
{
    const Callback callback = static_cast<TonaroUnitListener*>(self)->mCallback; // it may end this listener
    callback(*event, value);
}

AudioUnitParameter TonaroUnitListener::addressOf(AudioUnitParameterID parameter) const
{
    return {mUnit, parameter, kAudioUnitScope_Global, 0};
}

void TonaroUnitListener::notify(AudioUnitParameterID parameter, AudioUnitEventType type)
{
    if (!mListener) return;
    const AudioUnitEvent event{type, {.mParameter = addressOf(parameter)}};
    AUEventListenerNotify(mListener, mObject, &event);
}

void TonaroUnitListener::set(AudioUnitParameterID parameter, float value)
{
    if (!mListener) return;
    const AudioUnitParameter address = addressOf(parameter);
    AUParameterSet(mListener, mObject, &address, value, 0);
}

float TonaroUnitListener::value(AudioUnitParameterID parameter) const
{
    float value = 0;
    if (mUnit) AudioUnitGetParameter(mUnit, parameter, kAudioUnitScope_Global, 0, &value);
    return value;
}

double TonaroUnitListener::sampleRate() const
{
    double rate = 0;
    std::uint32_t size = sizeof rate;
    if (mUnit) AudioUnitGetProperty(mUnit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, &size);
    return rate > 0 ? rate : kTonaroDefaultSampleRate;
}
