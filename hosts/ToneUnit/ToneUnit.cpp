#include "ToneUnit/ToneUnit.h"

#include "AudioUnit/AUEventListener.h"
#include "CoreFoundation/CFArray.h"
#include "Foundation/NSString.h"

#include <cmath>
#include <cstring>

namespace {

constexpr AudioUnitElement kOnlyElement = 0;

/// 0 stands for not known.
bool IsSampleRate(double hz) { return hz == 0.0 || IsToneSampleRate(hz); }

template <typename T> OSStatus Answer(const T& value, void* outData, std::uint32_t* ioDataSize)
{
    if (*ioDataSize < sizeof value) return kAudioUnitErr_InvalidPropertyValue;
    std::memcpy(outData, &value, sizeof value);
    *ioDataSize = sizeof value;
    return noErr;
}

template <typename T> OSStatus Take(T& value, const void* data, std::uint32_t dataSize)
{
    if (dataSize != sizeof value) return kAudioUnitErr_InvalidPropertyValue;
    std::memcpy(&value, data, sizeof value);
    return noErr;
}

AudioUnitParameterInfo InfoOf(const ToneParameterFacts& facts, double sampleRate)
{
    AudioUnitParameterInfo info{};
    std::strncpy(info.name, facts.name, sizeof info.name - 1);
    info.unit = facts.unit;
    info.minValue = facts.minValue;
    info.maxValue = ToneMaximum(facts, sampleRate);
    info.defaultValue = HeldValue(facts, facts.defaultValue, sampleRate);
    return info;
}

OSStatus AnswerWaveformNames(void* outData, std::uint32_t* ioDataSize)
{
    if (*ioDataSize < sizeof(CFArrayRef)) return kAudioUnitErr_InvalidPropertyValue;
    std::array<RetainPtr<NSString>, kToneWaveformNames.size()> names;
    std::array<const NSObject*, kToneWaveformNames.size()> objects{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = NSString::string(kToneWaveformNames[i]);
        objects[i] = names[i].get();
    }
    return Answer(CFArrayCreate(objects.data(), static_cast<CFIndex>(objects.size())), outData, ioDataSize);
}

/// Whether the address is that of a parameter; `*facts` is its row then.
OSStatus Find(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
              const ToneParameterFacts** facts)
{
    *facts = FindToneParameter(parameter);
    if (!*facts) return kAudioUnitErr_InvalidParameter;
    return scope == kAudioUnitScope_Global && element == kOnlyElement ? noErr : kAudioUnitErr_InvalidElement;
}

} // namespace

ToneUnit::ToneUnit(double sampleRateHz) : mSampleRate(IsSampleRate(sampleRateHz) ? sampleRateHz : 0.0)
{
    for (const ToneParameterFacts& facts : kToneParameters) hold(facts, facts.defaultValue);
}

ToneSettings ToneUnit::settings() const
{
    std::array<float, kParamCount> held{};
    for (std::size_t i = 0; i < held.size(); ++i) held[i] = mValues[i];
    return ToneSettingsOf(held, mSampleRate);
}

OSStatus ToneUnit::GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                               void* outData, std::uint32_t* ioDataSize)
{
    if (!outData || !ioDataSize) return kAudio_ParamError;
    const bool isOfParameter =
        property == kAudioUnitProperty_ParameterInfo || property == kAudioUnitProperty_ParameterValueStrings;
    const ToneParameterFacts* const facts = FindToneParameter(element);
    if (scope != kAudioUnitScope_Global || (isOfParameter ? !facts : element != kOnlyElement))
        return kAudioUnitErr_InvalidElement;
    switch (property) {
    case kAudioUnitProperty_SampleRate:
        return Answer(mSampleRate.load(), outData, ioDataSize);
    case kAudioUnitProperty_ParameterInfo:
        return Answer(InfoOf(*facts, mSampleRate), outData, ioDataSize);
    case kAudioUnitProperty_ParameterValueStrings:
        if (facts->id == kParamWaveform) return AnswerWaveformNames(outData, ioDataSize);
        break;
    case kPropertyInputLength:
        return Answer(mInputLength, outData, ioDataSize);
    case kPropertyTimeFormat:
        return Answer(mTimeFormat, outData, ioDataSize);
    }
    return kAudioUnitErr_InvalidProperty;
}

OSStatus ToneUnit::SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                               const void* data, std::uint32_t dataSize)
{
    if (!data) return kAudio_ParamError;
    switch (property) {
    case kAudioUnitProperty_ParameterInfo:
    case kAudioUnitProperty_ParameterValueStrings:
        return kAudioUnitErr_PropertyNotWritable;
    case kAudioUnitProperty_SampleRate:
    case kPropertyInputLength:
    case kPropertyTimeFormat:
        break;
    default:
        return kAudioUnitErr_InvalidProperty;
    }
    if (scope != kAudioUnitScope_Global || element != kOnlyElement) return kAudioUnitErr_InvalidElement;
    const OSStatus status = property == kAudioUnitProperty_SampleRate ? setSampleRate(data, dataSize)
                            : property == kPropertyInputLength        ? Take(mInputLength, data, dataSize)
                                                                      : setTimeFormat(data, dataSize);
    if (status != noErr) return status;
    postPropertyChange(property);
    if (property == kAudioUnitProperty_SampleRate) lowerFrequencies();
    return noErr;
}

OSStatus ToneUnit::setSampleRate(const void* data, std::uint32_t dataSize)
{
    double rate = 0.0;
    if (const OSStatus status = Take(rate, data, dataSize)) return status;
    if (!IsSampleRate(rate)) return kAudioUnitErr_InvalidPropertyValue;
    mSampleRate = rate;
    return noErr;
}

OSStatus ToneUnit::setTimeFormat(const void* data, std::uint32_t dataSize)
{
    std::uint32_t format = 0;
    if (const OSStatus status = Take(format, data, dataSize)) return status;
    if (format >= kTonaroTimeFormats) return kAudioUnitErr_InvalidPropertyValue;
    mTimeFormat = format;
    return noErr;
}

void ToneUnit::lowerFrequencies()
{
    for (const ToneParameterFacts& facts : kToneParameters) {
        const float value = mValues[facts.id];
        if (value == HeldValue(facts, value, mSampleRate)) continue;
        hold(facts, value);
        const AudioUnitParameter parameter{this, facts.id, kAudioUnitScope_Global, kOnlyElement};
        const AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange, {.mParameter = parameter}};
        AUEventListenerNotify(nullptr, nullptr, &event);
    }
}

void ToneUnit::postPropertyChange(AudioUnitPropertyID property)
{
    const AudioUnitProperty changed{this, property, kAudioUnitScope_Global, kOnlyElement};
    const AudioUnitEvent event{kAudioUnitEvent_PropertyChange, {.mProperty = changed}};
    AUEventListenerNotify(nullptr, nullptr, &event);
}

OSStatus ToneUnit::GetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                AudioUnitParameterValue* outValue)
{
    if (!outValue) return kAudio_ParamError;
    const ToneParameterFacts* facts = nullptr;
    if (const OSStatus status = Find(parameter, scope, element, &facts)) return status;
    *outValue = mValues[facts->id];
    return noErr;
}

OSStatus ToneUnit::SetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                AudioUnitParameterValue value, std::uint32_t)
{
    const ToneParameterFacts* facts = nullptr;
    if (const OSStatus status = Find(parameter, scope, element, &facts)) return status;
    if (!std::isnan(value)) hold(*facts, value);
    if (ToneUnitObserver* observer = mObserver) observer->parameterSet(parameter, value);
    return std::isnan(value) ? kAudioUnitErr_InvalidPropertyValue : noErr;
}

// A sample rate that falls meanwhile lowers what it finds; what is stored after that is limited again here.
void ToneUnit::hold(const ToneParameterFacts& facts, float value)
{
    double rate = 0.0;
    do {
        rate = mSampleRate;
        mValues[facts.id] = HeldValue(facts, value, rate);
    } while (rate != mSampleRate);
}

void ToneUnit::ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope, AudioUnitElement, bool begins)
{
    ToneUnitObserver* const observer = mObserver;
    if (!observer || !FindToneParameter(parameter)) return;
    begins ? observer->gestureBegan(parameter) : observer->gestureEnded(parameter);
}
