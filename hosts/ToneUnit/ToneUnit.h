#pragma once

/// The test-tone generator as an audio unit: seven parameters, five properties, and the settings a renderer needs.
///
/// A value out of its range is held as `HeldValue` says; not-a-number is refused with
/// `kAudioUnitErr_InvalidPropertyValue` and the value stays. A setter posts nothing for a parameter: who sets one tells
/// the listeners (`AUParameterSet`). Setting a property posts its change; a lower sample rate also posts the value of
/// each frequency that had to come down with it.
///
/// | property | size | |
/// |---|---|---|
/// | sample rate | 64-bit float, Hz | written too: 1 to 768000, or 0 for not known |
/// | parameter info | the record | the element is the parameter |
/// | value strings | `CFArrayRef` | of the waveform; the reader releases it |
/// | `kPropertyInputLength` | unsigned 64-bit | written too; starts as 0 |
/// | `kPropertyTimeFormat` | unsigned 32-bit | written too: 0 to 20; starts as 1 |
///
/// A buffer that is too small, or data of another size, is `kAudioUnitErr_InvalidPropertyValue`.
///
/// Parameters and `settings` are free of locks and may be used from any thread, the sound's too; properties belong to
/// the thread of the user interface.

#include "ToneUnit/ToneParameters.h"

#include <atomic>

/// Hears everything that reaches the unit, on the thread that it comes from. A set is told after it took place, also
/// where it was refused.
struct ToneUnitObserver {
    virtual ~ToneUnitObserver() = default;
    virtual void gestureBegan(AudioUnitParameterID parameter) = 0;
    /// @param requestedValue  as asked for, before it was made to fit
    virtual void parameterSet(AudioUnitParameterID parameter, float requestedValue) = 0;
    virtual void gestureEnded(AudioUnitParameterID parameter) = 0;
};

class ToneUnit final : public ComponentInstanceRecord {
public:
    /// A rate that `SetProperty` would refuse counts as 0.
    explicit ToneUnit(double sampleRateHz = kToneDefaultSampleRate);

    /// Not owned; outlives the unit or is taken away with null.
    void setObserver(ToneUnitObserver* observer) { mObserver = observer; }
    ToneSettings settings() const;

    OSStatus GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, void* outData,
                         std::uint32_t* ioDataSize) override;
    OSStatus SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, const void* data,
                         std::uint32_t dataSize) override;
    OSStatus GetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          AudioUnitParameterValue* outValue) override;
    OSStatus SetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          AudioUnitParameterValue value, std::uint32_t bufferOffset) override;
    void ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          bool begins) override;

private:
    void hold(const ToneParameterFacts& facts, float value);
    OSStatus setSampleRate(const void* data, std::uint32_t dataSize);
    OSStatus setTimeFormat(const void* data, std::uint32_t dataSize);
    void lowerFrequencies();
    void postPropertyChange(AudioUnitPropertyID property);

    std::array<std::atomic<float>, kParamCount> mValues;
    std::atomic<double> mSampleRate; // Hz
    std::atomic<ToneUnitObserver*> mObserver = nullptr;
    std::uint64_t mInputLength = 0; // samples
    std::uint32_t mTimeFormat = 1;
    static_assert(std::atomic<float>::is_always_lock_free && std::atomic<double>::is_always_lock_free);
};
