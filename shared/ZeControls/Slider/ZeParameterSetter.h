#pragma once

/// The one path by which an editor changes its audio unit's parameters.
///
/// Every edit is framed by a begin and an end gesture: for a registered slider from the press to the release of the
/// mouse, for any other sender around each single value. The editor's listener and the control that made the edit are
/// named as sender.
///
/// A parameter that wasn't given at creation is ignored by every call. Statuses of the unit's calls aren't examined: an
/// edit that the unit refuses still ends its gesture.
///
/// Example: a text field that sets parameter 1 to 440 gives the unit begin 1, set 1 440, end 1.

#include "AudioUnit/AUEventListener.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSDictionary.h"

class NSNotification;
class ZeSlider;

class ZeParameterSetter : public NSObject {
public:
    NS_CLASS(ZeParameterSetter)

    /// @param listener      the editor's own; must outlive the setter
    /// @param parameterIDs  `count` ids
    virtual bool initWithAudioUnit(AudioUnit unit, AUEventListenerRef listener,
                                   const AudioUnitParameterID* parameterIDs, unsigned count);

    /// Makes the slider the control of a parameter; it is retained, and its presses become gestures. Null is ignored.
    void addZeSlider(ZeSlider* slider, AudioUnitParameterID parameter);

    void setParameter(AudioUnitParameterID parameter, float value, NSObject* sender);
    /// With another scope or element than 0 the value is set on the unit directly; the event then still names scope 0,
    /// element 0.
    void setParameter(AudioUnitParameterID parameter, float value, NSObject* sender, AudioUnitElement element,
                      AudioUnitScope scope);

    void handleSliderMouseDown(NSNotification* notification);
    void handleSliderMouseUp(NSNotification* notification);

protected:
    void dealloc() override;

private:
    bool copyEvent(const NSObject* key, AudioUnitEvent& event) const;
    bool isRegisteredSlider(const NSObject* object) const;
    void notify(AudioUnitEvent event, AudioUnitEventType type, NSObject* sender) const;
    void notifySliderGesture(const NSNotification* notification, AudioUnitEventType type) const;

    AUEventListenerRef m_pListener = nullptr;
    RetainPtr<NSMutableDictionary> m_events;  ///< parameter id -> NSValue of an AudioUnitEvent
    RetainPtr<NSMutableDictionary> m_sliders; ///< parameter id -> ZeSlider
};
