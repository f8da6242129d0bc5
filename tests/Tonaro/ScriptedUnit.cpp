#include "ScriptedUnit.h"

#include "CoreFoundation/CFArray.h"
#include "Foundation/NSString.h"

#include <charconv>
#include <cstring>

namespace {

std::string shortest(float value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

template <typename T> OSStatus answer(const T& value, void* data, std::uint32_t* size)
{
    std::memcpy(data, &value, sizeof value);
    *size = sizeof value;
    return noErr;
}

} // namespace

std::string ScriptedUnit::takeLog() { return std::exchange(mLog, {}); }

void ScriptedUnit::log(const std::string& word) { mLog += mLog.empty() ? word : " " + word; }

OSStatus ScriptedUnit::GetProperty(AudioUnitPropertyID property, AudioUnitScope, AudioUnitElement, void* data,
                                   std::uint32_t* size)
{
    if (failsAlways) return kAudioUnitErr_InvalidProperty;
    if (property == kAudioUnitProperty_SampleRate) return answer(sampleRate, data, size);
    if (property == kPropertyTimeFormat && timeFormat) return answer(*timeFormat, data, size);
    if (property == kAudioUnitProperty_ParameterInfo) {
        AudioUnitParameterInfo info{};
        info.minValue = lowestWaveform;
        return answer(info, data, size);
    }
    if (property == kAudioUnitProperty_ParameterValueStrings) {
        std::vector<RetainPtr<NSObject>> names;
        for (const std::string& name : waveformNames) names.push_back(NSString::string(name));
        CFArrayRef array = NSArray::array(std::move(names)).leak(); // the reader's from here on
        return answer(array, data, size);
    }
    return kAudioUnitErr_InvalidProperty;
}

OSStatus ScriptedUnit::SetProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, const void*, std::uint32_t)
{
    return kAudioUnitErr_PropertyNotWritable;
}

OSStatus ScriptedUnit::GetParameter(AudioUnitParameterID id, AudioUnitScope, AudioUnitElement, float* value)
{
    if (failsAlways) return kAudioUnitErr_InvalidParameter;
    *value = values.at(id);
    return noErr;
}

OSStatus ScriptedUnit::SetParameter(AudioUnitParameterID id, AudioUnitScope, AudioUnitElement, float value,
                                    std::uint32_t)
{
    log("set(" + std::to_string(id) + "," + shortest(value) + ")");
    if (failsAlways) return kAudioUnitErr_InvalidParameter;
    values.at(id) = value;
    if (whenSet) std::exchange(whenSet, nullptr)();
    return noErr;
}

void ScriptedUnit::ParameterGesture(AudioUnitParameterID id, AudioUnitScope, AudioUnitElement, bool begins)
{
    log((begins ? "begin(" : "end(") + std::to_string(id) + ")");
}
