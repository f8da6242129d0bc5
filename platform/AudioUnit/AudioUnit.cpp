#include "AudioUnit/AudioUnit.h"

void ComponentInstanceRecord::ParameterGesture(AudioUnitParameterID, AudioUnitScope, AudioUnitElement, bool) {}

OSStatus AudioUnitGetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* outData, std::uint32_t* ioDataSize)
{
    if (!unit || !outData || !ioDataSize) return kAudio_ParamError;
    return unit->GetProperty(property, scope, element, outData, ioDataSize);
}

OSStatus AudioUnitSetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, const void* data, std::uint32_t dataSize)
{
    if (!unit || !data) return kAudio_ParamError;
    return unit->SetProperty(property, scope, element, data, dataSize);
}

OSStatus AudioUnitGetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue* outValue)
{
    if (!unit || !outValue) return kAudio_ParamError;
    return unit->GetParameter(parameter, scope, element, outValue);
}

OSStatus AudioUnitSetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue value, std::uint32_t bufferOffset)
{
    if (!unit) return kAudio_ParamError;
    return unit->SetParameter(parameter, scope, element, value, bufferOffset);
}
