// Showing what the unit says: the full read, and the dispatch of its events to the controls.

#include "TonaroCocoaView.h"

#include <limits>

namespace {

constexpr double kLowestHz = 0.01;
constexpr std::uint32_t kNoTimeFormat = UINT32_MAX; ///< leaves the field in the format it has
constexpr float kSilentGain = -120.0F;              ///< dB, stands for minus infinity

constexpr const char* kPropertyUnreadable = "[TonaroCocoaView synchronizeUIWithParameterValues] (x.1)";
constexpr const char* kParameterUnreadable = "[StretchoCocoaView synchronizeUIWithParameterValues] (x.1)";

AudioUnitEvent propertyChange(AudioUnit unit, AudioUnitPropertyID property)
{
    AudioUnitEvent event{};
    event.mEventType = kAudioUnitEvent_PropertyChange;
    event.mArgument.mProperty = {unit, property, kAudioUnitScope_Global, 0};
    return event;
}

AudioUnitEvent valueChange(const AudioUnitParameter& parameter)
{
    AudioUnitEvent event{};
    event.mEventType = kAudioUnitEvent_ParameterValueChange;
    event.mArgument.mParameter = parameter;
    return event;
}

} // namespace

void TonaroCocoaView::_synchronizeUIWithAU()
{
    readWaveformNames();
    readSampleRate();
    readInputLength();
    readTimeFormat();
    const AudioUnitEvent event = propertyChange(mAU, kAudioUnitProperty_SampleRate);
    _eventListener(this, &event, 0.0F);
    readParameters();
}

void TonaroCocoaView::readWaveformNames()
{
    constexpr SEL kMethod = "_synchronizeUIWithAU";
    mWaveformPopup.call(&NSPopUpButton::removeAllItems);

    std::uint32_t size = sizeof mWaveformParameterInfo;
    report(AudioUnitGetProperty(mAU, kAudioUnitProperty_ParameterInfo, kAudioUnitScope_Global, kParamWaveform,
                                &mWaveformParameterInfo, &size),
           kMethod, kPropertyUnreadable);

    CFArrayRef names = nullptr;
    size = sizeof names;
    const OSStatus status = AudioUnitGetProperty(mAU, kAudioUnitProperty_ParameterValueStrings, kAudioUnitScope_Global,
                                                 kParamWaveform, &names, &size);
    mWaveformStrings = RetainPtr<const NSArray>::adopt(status == noErr ? names : nullptr);
    report(status, kMethod, kPropertyUnreadable);

    for (CFIndex i = 0; mWaveformStrings && i < CFArrayGetCount(mWaveformStrings); ++i)
        mWaveformPopup.call(&NSPopUpButton::addItemWithTitle,
                            asKind<NSString>(CFArrayGetValueAtIndex(mWaveformStrings, i)));
}

void TonaroCocoaView::readSampleRate()
{
    std::uint32_t size = sizeof mSampleRate;
    AudioUnitGetProperty(mAU, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &mSampleRate, &size);
    if (mSampleRate == 0.0) mSampleRate = kTonaroDefaultSampleRate;
    mLengthText.call(&ZeTimeTextField::setFrameAndSampleRate, mSampleRate);
    updateFreqSlidersRange();
}

void TonaroCocoaView::readInputLength()
{
    std::uint32_t size = sizeof mInputLength;
    mInputLength = 0;
    AudioUnitGetProperty(mAU, kPropertyInputLength, kAudioUnitScope_Global, 0, &mInputLength, &size);
    if (mInputLength == 0) mInputLength = static_cast<std::uint64_t>(NSTruncate(mSampleRate)); // a second
}

void TonaroCocoaView::readTimeFormat()
{
    std::uint32_t format = kNoTimeFormat;
    std::uint32_t size = sizeof format;
    AudioUnitGetProperty(mAU, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, &size);
    mLengthText.call(&ZeTimeTextField::setFormat, format);
}

void TonaroCocoaView::readParameters()
{
    for (const AudioUnitParameter& parameter : mParameter) {
        float value = 0;
        report(AudioUnitGetParameter(mAU, parameter.mParameterID, kAudioUnitScope_Global, 0, &value),
               "_synchronizeUIWithAU", kParameterUnreadable);
        const AudioUnitEvent event = valueChange(parameter);
        _eventListener(this, &event, value);
    }
}

void TonaroCocoaView::_eventListener(void*, const AudioUnitEvent* event, float value)
{
    if (event->mEventType == kAudioUnitEvent_PropertyChange) {
        if (event->mArgument.mProperty.mPropertyID == kAudioUnitProperty_SampleRate) readSampleRate();
    } else if (event->mEventType == kAudioUnitEvent_ParameterValueChange) {
        showParameter(event->mArgument.mParameter.mParameterID, value);
    }
}

void TonaroCocoaView::showParameter(AudioUnitParameterID parameter, float value)
{
    switch (parameter) {
    case kParamWaveform:
        showWaveform(value);
        break;
    case kParamStartFrequency:
        showFrequency(mStartFrequencySlider, mStartFrequencyText, value);
        break;
    case kParamEndFrequency:
        showFrequency(mEndFrequencySlider, mEndFrequencyText, value);
        break;
    case kParamUseEnd:
        mUseEndCheckbox.call(&NSControl::setFloatValue, value);
        _enableEndFrequencyControls(value > 0);
        break;
    case kParamLogSweep:
        mLogSweepCheckbox.call(&NSControl::setFloatValue, value);
        break;
    case kParamGain:
        mGainSlider.call(&NSControl::setFloatValue, value);
        _updateGainText();
        break;
    case kParamLength:
        showLength(value);
        break;
    default:
        break;
    }
}

void TonaroCocoaView::showWaveform(float value)
{
    if (!mWaveformStrings) return;
    const std::int64_t index = NSTruncate(double{value - mWaveformParameterInfo.minValue});
    // Choice: a value outside the list leaves the pop-up as it is. Test:
    // TonaroCocoaViewTest.WaveformsOutsideTheListAreIgnored
    if (index < 0 || index >= CFArrayGetCount(mWaveformStrings)) return;
    mWaveformPopup.call(&NSPopUpButton::setTitle, asKind<NSString>(CFArrayGetValueAtIndex(mWaveformStrings, index)));
}

void TonaroCocoaView::showFrequency(const Outlet<ZeFrequencySlider>& slider, const Outlet<NSTextField>& text, float hz)
{
    slider.call(&ZeFrequencySlider::setFreqValue, double{hz});
    text.call(&NSControl::setFloatValue, hz);
    slider.call(&ZeSlider::setSmallStep, smallStepForFreq(double{hz}));
    slider.call(&ZeSlider::setLargeStep, largeStepForFreq(double{hz}));
}

void TonaroCocoaView::showLength(float seconds)
{
    mLengthText.call(&ZeTimeTextField::initFormatter);
    const auto samples = static_cast<float>(double{seconds} * mSampleRate);
    mLengthText.call(&ZeTimeTextField::setObjectValue, NSNumber::numberWithFloat(samples).get());
    mLengthStepper.call(&NSControl::setFloatValue, seconds);
}

void TonaroCocoaView::_enableEndFrequencyControls(bool enable)
{
    mEndFrequencySlider.call(&NSControl::setEnabled, enable);
    mEndFrequencyText.call(&NSControl::setEnabled, enable);
    mLogSweepCheckbox.call(&NSControl::setEnabled, enable);
}

void TonaroCocoaView::_updateGainText()
{
    float gain = 0;
    AudioUnitGetParameter(mAU, kParamGain, kAudioUnitScope_Global, 0, &gain);
    if (gain == kSilentGain) gain = -std::numeric_limits<float>::infinity();
    mGainText.call(&NSControl::setFloatValue, gain);
}

void TonaroCocoaView::updateFreqSlidersRange()
{
    const double nyquist = mSampleRate * 0.5;
    const RetainPtr<NSString> label = NSString::stringWithFormat("(.01 to %.0f Hz)", nyquist);
    for (const auto* slider : {&mStartFrequencySlider, &mEndFrequencySlider}) {
        slider->call(&ZeFrequencySlider::setMinFreqValue, kLowestHz);
        slider->call(&ZeFrequencySlider::setMaxFreqValue, nyquist);
    }
    mStartFreqRangeText.call(&NSControl::setStringValue, label);
    mEndFreqRangeText.call(&NSControl::setStringValue, label);
}

double TonaroCocoaView::largeStepForFreq(double hz) const
{
    if (100.0 > hz) return 10.0;
    return 1000.0 > hz ? 100.0 : 1000.0;
}

double TonaroCocoaView::smallStepForFreq(double hz) const { return largeStepForFreq(hz) / 10.0; }
