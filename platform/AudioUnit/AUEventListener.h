#pragma once

/// Listeners to the events of audio units: value changes, gestures, property changes.
///
/// A listener belongs to one run loop and calls back there. The first event after a quiet time comes in the loop's next
/// turn; after that all that is pending comes in one round, at most once per notification interval (or granularity,
/// where that is longer). What a callback posts waits for the next round.
///
/// A listener holds one pending value per parameter, whoever posted it, and delivers the newest. Gestures keep values
/// apart: they are delivered in order, never merged, and only to listeners that registered gestures for the parameter.
/// Property changes of the same property are merged. Where a loop is stuck and more than 512 gestures wait, the oldest
/// one goes, begin and end together.
///
/// An event goes to every registration that matches it, except to the pair (listener, object) that sent it. Of merged
/// events the newest decides who is left out.
///
/// `AUEventListenerNotify`, `AUParameterSet` and `AudioUnitSetParameter` may be called from any thread; the rest
/// belongs to the run loop's. No lock is held while a unit or a callback is called.
///
/// Events carry the unit's handle and nothing behind it: delivery never calls the unit, so one may end while events
/// about it are pending. Whoever listens disposes of the listener, or doesn't use the handle, once the unit has ended.
///
/// Failure: a status, 0 for success; `kAudio_ParamError` for a null or disposed listener, a null unit or an unknown
/// type of event. After `AUListenerDispose` the callback is never called again. What a callback throws reaches whoever
/// runs the loop, and the events that were still pending come in the next round.

#include "AudioUnit/AudioUnit.h"
#include "CoreFoundation/CFRunLoop.h"

enum AudioUnitEventType : std::uint32_t {
    kAudioUnitEvent_ParameterValueChange = 0,
    kAudioUnitEvent_BeginParameterChangeGesture = 1,
    kAudioUnitEvent_EndParameterChangeGesture = 2,
    kAudioUnitEvent_PropertyChange = 3,
};

struct AudioUnitEvent {
    AudioUnitEventType mEventType;
    union {
        AudioUnitParameter mParameter; ///< all types but property changes
        AudioUnitProperty mProperty;   ///< property changes
    } mArgument;
};

/// Type encoding of an AudioUnitEvent, for boxing one in an NSValue.
inline constexpr const char* kAudioUnitEventEncoding =
    "{AudioUnitEvent=I(?={AudioUnitParameter=^{ComponentInstanceRecord}III}{AudioUnitProperty=^{"
    "ComponentInstanceRecord}III})}";

/// @param userData  as given at creation
/// @param object    as given at registration
/// @param hostTime  nanoseconds of the process's clock when the event was posted
/// @param value     the value of a value change, as the unit held it after the set; 0 for other events
using AUEventListenerProc = void (*)(void* userData, void* object, const AudioUnitEvent* event, std::uint64_t hostTime,
                                     AudioUnitParameterValue value);

struct AUListenerBase;
using AUEventListenerRef = AUListenerBase*;

/// @param runLoop  the loop of the calling thread; the listener retains it
/// @param notificationInterval, valueChangeGranularity  seconds, finite and not negative
OSStatus AUEventListenerCreate(AUEventListenerProc callback, void* userData, CFRunLoopRef runLoop, CFRunLoopMode mode,
                               float notificationInterval, float valueChangeGranularity,
                               AUEventListenerRef* outListener);
OSStatus AUListenerDispose(AUEventListenerRef listener);
/// A second registration of the same event and object counts once.
OSStatus AUEventListenerAddEventType(AUEventListenerRef listener, void* object, const AudioUnitEvent* event);

/// Tells the unit (gestures) and the listeners of an event; the end of a gesture is queued before the unit hears of it,
/// so that what the unit tells then comes after it. The value of a value change is read from the unit.
/// @param sendingListener, sendingObject  the pair that is not told; null for none
OSStatus AUEventListenerNotify(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitEvent* event);

/// Sets a parameter and tells the listeners of the value that the unit then holds. When the unit refuses, nobody is
/// told.
OSStatus AUParameterSet(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitParameter* parameter,
                        AudioUnitParameterValue value, std::uint32_t bufferOffset);

/// How many event types the listener has registered.
std::size_t AUEventListenerCountEventTypes(AUEventListenerRef listener);
/// Whether anything waits for delivery in any listener, for a host that wants to know when all is silent.
bool AUEventListenersArePending();
