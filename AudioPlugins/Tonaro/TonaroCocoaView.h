#pragma once

/// The editor: a view bound to one audio unit.
///
/// It keeps no copy of the unit's values. The controls show what the unit says, each edit goes to the unit through the
/// parameter setter, and other controls change only when the unit's events come back.
///
/// Failure: calls of the unit that fail are reported to the assertion handler, with the method, this view, the source
/// line and a fixed message; with a handler that returns, work goes on.

#include "AppKit/NSButton.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSPopUpButton.h"
#include "AppKit/NSStepper.h"
#include "AppKit/NSTextField.h"
#include "AudioUnit/AUEventListener.h"
#include "CoreFoundation/CFArray.h"
#include "Slider/ZeFrequencySlider.h"
#include "Slider/ZeGainFader.h"
#include "Slider/ZeParameterSetter.h"
#include "TextField/ZeTimeTextField.h"
#include "TonaroEditing.h"
#include "TonaroParameters.h"

#include <array>
#include <memory>
#include <source_location>

/// The bundle that holds the interface description and the picture behind the controls.
inline constexpr const char* kTonaroViewBundleIdentifier = "org.tonaro.view";

/// Callback of the view's listener: hands the event to the view that `userData` points to.
void EventListenerDispatcher(void* userData, void* object, const AudioUnitEvent* event, std::uint64_t hostTime,
                             float value);

class TonaroCocoaView : public NSView {
public:
    NS_CLASS(TonaroCocoaView)

    void awakeFromNib() override;
    void drawRect(NSRect dirty) override;
    NSRect opaqueRect() const override;
    bool performKeyEquivalent(NSEvent& event) override;

    /// Binds the view to a unit, which must outlive the binding; a second call binds it anew.
    void setAU(AudioUnit unit);

    // --- showing what the unit says

    /// Reads everything from the unit into the controls.
    void _synchronizeUIWithAU();
    void _eventListener(void* object, const AudioUnitEvent* event, float value);
    void _enableEndFrequencyControls(bool enable);
    void _updateGainText(); ///< shows what the unit holds; -120 dB as "-Inf"
    void updateFreqSlidersRange();
    /// Step of the page keys near a frequency: 10 Hz below 100 Hz, 100 Hz below 1000 Hz, else 1000 Hz.
    double largeStepForFreq(double hz) const;
    double smallStepForFreq(double hz) const; ///< a tenth of that, for the arrow keys

    // --- what a person does

    void onHelp(NSObject* sender);
    void waveformChanged(NSObject* sender);
    void gainChanged(NSObject* sender);
    void startFrequencyChanged(NSObject* sender);
    void endFrequencyChanged(NSObject* sender);
    void startFrequencySliderChanged(NSObject* sender);
    void endFrequencySliderChanged(NSObject* sender);
    void logSweepChanged(NSObject* sender);
    void useEndCheckboxChanged(NSObject* sender);
    void lengthChanged(NSObject* sender); ///< sends what the length field holds, whoever the sender is
    void lengthStepperChanged(NSObject* sender);

protected:
    void dealloc() override;

private:
    bool isBound() const { return mAU || mEventListener; } ///< to a null unit, too, which only makes a listener
    void _addListeners();
    void _removeListeners();
    void readSampleRate();
    void readInputLength();
    void readTimeFormat();
    void readWaveformNames();
    void readParameters();
    void showParameter(AudioUnitParameterID parameter, float value);
    void showWaveform(float value);
    void showFrequency(const Outlet<ZeFrequencySlider>& slider, const Outlet<NSTextField>& text, float hz);
    void showLength(float seconds);
    void send(AudioUnitParameterID parameter, float value, NSObject* sender); ///< does nothing in a view without a unit
    void sendTypedFrequency(AudioUnitParameterID parameter, NSObject* sender);
    void report(OSStatus status, SEL method, const char* message,
                std::source_location where = std::source_location::current());

    Outlet<NSPopUpButton> mWaveformPopup;
    Outlet<NSTextField> mStartFrequencyText;
    Outlet<NSTextField> mEndFrequencyText;
    Outlet<NSButton> mLogSweepCheckbox;
    Outlet<ZeGainFader> mGainSlider;
    Outlet<NSTextField> mGainText;
    Outlet<NSTextField> mEndFreqRangeText;
    Outlet<NSTextField> mStartFreqRangeText;
    Outlet<NSStepper> mLengthStepper;    ///< in seconds
    Outlet<ZeTimeTextField> mLengthText; ///< in samples
    Outlet<ZeFrequencySlider> mEndFrequencySlider;
    Outlet<ZeFrequencySlider> mStartFrequencySlider;
    Outlet<NSButton> mUseEndCheckbox;
    AudioUnit mAU = nullptr; ///< not owned
    std::array<AudioUnitParameter, kParamCount> mParameter{};
    AUEventListenerRef mEventListener = nullptr;
    double mSampleRate = 0;         ///< Hz
    std::uint64_t mInputLength = 0; ///< samples
    RetainPtr<NSColor> mBackgroundColor;
    RetainPtr<const NSArray> mWaveformStrings;
    AudioUnitParameterInfo mWaveformParameterInfo{};
    RetainPtr<ZeParameterSetter> mParamSetter;
    std::unique_ptr<TonaroEditing> mEditing; // while the view is bound
};
