#pragma once

/// The handle of an audio unit: its properties and parameters.
///
/// Failure: every call answers a status, 0 for success. A null unit answers `kAudio_ParamError`.

#include <cstdint>

using OSStatus = std::int32_t;
using AudioUnitPropertyID = std::uint32_t;
using AudioUnitParameterID = std::uint32_t;
using AudioUnitScope = std::uint32_t;
using AudioUnitElement = std::uint32_t;
using AudioUnitParameterValue = float;

enum : OSStatus {
    noErr = 0,
    kAudio_ParamError = -50,
    kAudioUnitErr_InvalidProperty = -10879,
    kAudioUnitErr_InvalidParameter = -10878,
    kAudioUnitErr_InvalidElement = -10877,
    kAudioUnitErr_PropertyNotWritable = -10865,
    kAudioUnitErr_InvalidPropertyValue = -10851,
};

enum : AudioUnitScope { kAudioUnitScope_Global = 0 };

enum : AudioUnitPropertyID {
    kAudioUnitProperty_SampleRate = 2,    ///< 64-bit float, Hz
    kAudioUnitProperty_ParameterInfo = 4, ///< AudioUnitParameterInfo; the element is the parameter's id
    kAudioUnitProperty_ParameterValueStrings =
        16, ///< CFArrayRef of strings that the reader must release; element as above
};

enum AudioUnitParameterUnit : std::uint32_t {
    kAudioUnitParameterUnit_Generic = 0,
    kAudioUnitParameterUnit_Indexed = 1,
    kAudioUnitParameterUnit_Boolean = 2,
    kAudioUnitParameterUnit_Seconds = 4,
    kAudioUnitParameterUnit_Hertz = 8,
    kAudioUnitParameterUnit_Decibels = 13,
};

struct AudioUnitParameterInfo {
    char name[52]; ///< UTF-8, ends with a zero byte
    AudioUnitParameterUnit unit;
    AudioUnitParameterValue minValue;
    AudioUnitParameterValue maxValue;
    AudioUnitParameterValue defaultValue;
    std::uint32_t flags;
};

/// What stands behind a handle. A host implements it; its calls come from the thread of the user interface,
/// `GetParameter` and `SetParameter` from any thread.
struct ComponentInstanceRecord {
    virtual ~ComponentInstanceRecord() = default;
    /// `*ioDataSize` is the room in `outData` on entry and the bytes written on return.
    virtual OSStatus GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                                 void* outData, std::uint32_t* ioDataSize) = 0;
    virtual OSStatus SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                                 const void* data, std::uint32_t dataSize) = 0;
    virtual OSStatus GetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                  AudioUnitParameterValue* outValue) = 0;
    virtual OSStatus SetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                  AudioUnitParameterValue value, std::uint32_t bufferOffset) = 0;
    /// An editor's gesture for a parameter of this unit begins or ends. Called before the unit's listeners hear of it.
    virtual void ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                  bool begins);
};
using AudioUnit = ComponentInstanceRecord*;

struct AudioUnitParameter {
    AudioUnit mAudioUnit;
    AudioUnitParameterID mParameterID;
    AudioUnitScope mScope;
    AudioUnitElement mElement;
};

struct AudioUnitProperty {
    AudioUnit mAudioUnit;
    AudioUnitPropertyID mPropertyID;
    AudioUnitScope mScope;
    AudioUnitElement mElement;
};

OSStatus AudioUnitGetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* outData, std::uint32_t* ioDataSize);
OSStatus AudioUnitSetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, const void* data, std::uint32_t dataSize);
OSStatus AudioUnitGetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue* outValue);
/// Sets the value on the unit and tells nobody.
OSStatus AudioUnitSetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue value, std::uint32_t bufferOffset);
