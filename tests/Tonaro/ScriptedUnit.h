#pragma once

// A unit that answers what a test tells it to, and logs what reaches it.

#include "AudioUnit/AudioUnit.h"
#include "TonaroParameters.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class ScriptedUnit final : public ComponentInstanceRecord {
public:
    std::array<float, kParamCount> values{0, 440, 1, 8000, 0, -12, 2.5F};
    float lowestWaveform = 0;
    std::vector<std::string> waveformNames{"Sine", "Triangle", "Square"};
    double sampleRate = 44100;
    std::optional<std::uint32_t> timeFormat; ///< unanswered without one
    bool failsAlways = false;
    std::function<void()> whenSet; ///< called once, in the next set

    /// "begin(1) set(1,440) end(1)" since the last call.
    std::string takeLog();

    OSStatus GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, void* data,
                         std::uint32_t* size) override;
    OSStatus SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, const void* data,
                         std::uint32_t size) override;
    OSStatus GetParameter(AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element,
                          float* value) override;
    OSStatus SetParameter(AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, float value,
                          std::uint32_t bufferOffset) override;
    void ParameterGesture(AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element,
                          bool begins) override;

private:
    void log(const std::string& word);
    std::string mLog;
};
