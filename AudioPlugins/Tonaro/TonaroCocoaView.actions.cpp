// What a person does: each action turns its control's state into a value for the unit.

#include "TonaroCocoaView.h"

#include "AppKit/NSApplication.h"
#include "ZeHelp.h"

#include <cmath>

namespace {

constexpr int kHelpTopic = 8;

float valueOf(NSObject* sender)
{
    const auto* control = asKind<NSControl>(sender);
    return control ? control->floatValue() : 0.0F;
}

/// Up to the next thousandth of a hertz, in 32-bit floats: 440.0001 gives 440.001.
float roundedUpHz(float hz) { return std::ceil(hz * 1000.0F) / 1000.0F; }

} // namespace

void TonaroCocoaView::send(AudioUnitParameterID parameter, float value, NSObject* sender)
{
    // without an event a slider only answers the unit
    if (mEditing && asKind<ZeSlider>(sender) && NSApplication::sharedApplication()->currentEvent())
        mEditing->history().expectBareEdit(parameter);
    if (mParamSetter) mParamSetter->setParameter(parameter, value, sender);
}

void TonaroCocoaView::waveformChanged(NSObject* sender)
{
    const auto* popup = asKind<NSPopUpButton>(sender);
    const auto index = static_cast<float>(popup ? popup->indexOfSelectedItem() : 0);
    send(kParamWaveform, index + mWaveformParameterInfo.minValue, sender);
}

void TonaroCocoaView::gainChanged(NSObject* sender)
{
    send(kParamGain, valueOf(sender), sender);
    _updateGainText();
}

void TonaroCocoaView::startFrequencyChanged(NSObject* sender) { sendTypedFrequency(kParamStartFrequency, sender); }

void TonaroCocoaView::endFrequencyChanged(NSObject* sender) { sendTypedFrequency(kParamEndFrequency, sender); }

void TonaroCocoaView::sendTypedFrequency(AudioUnitParameterID parameter, NSObject* sender)
{
    send(parameter, roundedUpHz(valueOf(sender)), sender);
}

void TonaroCocoaView::startFrequencySliderChanged(NSObject* sender)
{
    const auto hz = static_cast<float>(mStartFrequencySlider.call(&ZeFrequencySlider::freqValue));
    send(kParamStartFrequency, hz, sender);
}

void TonaroCocoaView::endFrequencySliderChanged(NSObject* sender)
{
    const auto hz = static_cast<float>(mEndFrequencySlider.call(&ZeFrequencySlider::freqValue));
    send(kParamEndFrequency, hz, sender);
}

void TonaroCocoaView::logSweepChanged(NSObject* sender)
{
    send(kParamLogSweep, valueOf(sender) > 0 ? 1.0F : 0.0F, sender);
}

void TonaroCocoaView::useEndCheckboxChanged(NSObject* sender)
{
    const bool useEnd = valueOf(sender) > 0;
    send(kParamUseEnd, useEnd ? 1.0F : 0.0F, sender);
    _enableEndFrequencyControls(useEnd);
}

void TonaroCocoaView::lengthChanged(NSObject* sender)
{
    const auto samples = double{mLengthText.call(&NSControl::floatValue)};
    send(kParamLength, static_cast<float>(samples / mSampleRate), sender);
}

void TonaroCocoaView::lengthStepperChanged(NSObject* sender) { send(kParamLength, valueOf(sender), sender); }

void TonaroCocoaView::onHelp(NSObject*) { ZeHelp::Goto(kHelpTopic, nullptr); }
