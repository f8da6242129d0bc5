#pragma once

/// Hears of a unit's parameters and of its sample rate, beside the editor's own listener. For the views of the editor
/// that follow the unit by themselves.

#include "AudioUnit/AUEventListener.h"
#include "Foundation/NSObject.h"
#include "TonaroParameters.h"

#include <functional>

/// Notification interval and granularity of every listener in the editor.
inline constexpr float kTonaroListenerSeconds = 0.05F;

class TonaroUnitListener {
public:
    using Callback = std::function<void(const AudioUnitEvent& event, float value)>;
    enum class Gestures { no, yes };

    /// @param unit    outlives this object
    /// @param object  the sender of `set` and of the gestures here, which are not heard back
    TonaroUnitListener(AudioUnit unit, NSObject* object, Gestures gestures, Callback callback);
    ~TonaroUnitListener();
    TonaroUnitListener(const TonaroUnitListener&) = delete;
    TonaroUnitListener& operator=(const TonaroUnitListener&) = delete;

    void begin(AudioUnitParameterID parameter) { notify(parameter, kAudioUnitEvent_BeginParameterChangeGesture); }
    void set(AudioUnitParameterID parameter, float value);
    void end(AudioUnitParameterID parameter) { notify(parameter, kAudioUnitEvent_EndParameterChangeGesture); }

    float value(AudioUnitParameterID parameter) const; ///< as the unit holds it; 0 where it answers none
    double sampleRate() const;                         ///< Hz; 44100 where the unit knows none

private:
    static void dispatch(void* self, void* object, const AudioUnitEvent* event, std::uint64_t hostTime, float value);
    void listenTo(const AudioUnitEvent& event);
    void notify(AudioUnitParameterID parameter, AudioUnitEventType type);
    AudioUnitParameter addressOf(AudioUnitParameterID parameter) const;

    AudioUnit mUnit;
    NSObject* mObject;
    Callback mCallback;
    AUEventListenerRef mListener = nullptr;
};
