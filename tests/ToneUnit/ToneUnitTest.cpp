#include "ToneUnit/ToneUnit.h"

#include "AudioUnit/AUEventListener.h"
#include "CoreFoundation/CFArray.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSString.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float ValueOf(ToneUnit& unit, AudioUnitParameterID id)
{
    float value = kNaN;
    EXPECT_EQ(AudioUnitGetParameter(&unit, id, kAudioUnitScope_Global, 0, &value), noErr);
    return value;
}

OSStatus SetSampleRate(ToneUnit& unit, double hz)
{
    return AudioUnitSetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &hz, sizeof hz);
}

double SampleRateOf(ToneUnit& unit)
{
    double hz = -1.0;
    std::uint32_t size = sizeof hz;
    EXPECT_EQ(AudioUnitGetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &hz, &size), noErr);
    return hz;
}

TEST(ToneUnit, HoldsTheNearestValueThatFits)
{
    const auto held = [](TonaroParameterID id, float asked, OSStatus status = noErr) {
        ToneUnit unit(48000.0);
        EXPECT_EQ(AudioUnitSetParameter(&unit, id, kAudioUnitScope_Global, 0, asked, 0), status);
        return ValueOf(unit, id);
    };
    EXPECT_EQ(held(kParamWaveform, 2.9f), 2.0f) << "a waveform is whole";
    EXPECT_EQ(held(kParamWaveform, 17.0f), 3.0f) << "past the last waveform";
    EXPECT_EQ(held(kParamStartFrequency, 30000.0f), 24000.0f) << "above half the rate";
    EXPECT_EQ(held(kParamEndFrequency, -1.0f), 0.01f) << "as low as it goes";
    EXPECT_EQ(held(kParamUseEnd, 0.25f), 1.0f) << "any switch above 0 is on";
    EXPECT_EQ(held(kParamUseEnd, 0.0f), 0.0f);
    EXPECT_EQ(held(kParamLogSweep, -3.0f), 0.0f) << "a negative switch is off";
    EXPECT_EQ(held(kParamGain, -kInfinity), -120.0f) << "minus infinity is silence";
    EXPECT_EQ(held(kParamGain, 6.0f), 0.0f) << "no amplifying";
    EXPECT_EQ(held(kParamLength, 86400.0f), 86399.9921875f) << "a day is too long";
    EXPECT_EQ(held(kParamLength, kNaN, kAudioUnitErr_InvalidPropertyValue), 2.5f);
}

/// Hears all of a unit's value changes, and the two properties that an editor watches.
struct ToneUnitEvents : testing::Test {
    ToneUnitEvents()
    {
        EXPECT_EQ(AUEventListenerCreate(&ToneUnitEvents::hear, this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes,
                                        0.05f, 0.05f, &listener),
                  noErr);
        AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange, {.mParameter = {&unit, 0, 0, 0}}};
        for (; event.mArgument.mParameter.mParameterID < kParamCount; ++event.mArgument.mParameter.mParameterID)
            AUEventListenerAddEventType(listener, nullptr, &event);
        for (const AudioUnitPropertyID id :
             {AudioUnitPropertyID{kAudioUnitProperty_SampleRate}, AudioUnitPropertyID{kPropertyInputLength}}) {
            event = {kAudioUnitEvent_PropertyChange, {.mProperty = {&unit, id, 0, 0}}};
            AUEventListenerAddEventType(listener, nullptr, &event);
        }
    }
    ~ToneUnitEvents() override { AUListenerDispose(listener); }

    static void hear(void* self, void*, const AudioUnitEvent* event, std::uint64_t, float value)
    {
        std::ostringstream entry;
        if (event->mEventType == kAudioUnitEvent_PropertyChange)
            entry << "property" << event->mArgument.mProperty.mPropertyID << ' ';
        else
            entry << "set" << event->mArgument.mParameter.mParameterID << '=' << value << ' ';
        static_cast<ToneUnitEvents*>(self)->log += entry.str();
    }
    std::string takeLog()
    {
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, false);
        return std::exchange(log, {});
    }
    void set(AudioUnitParameterID id, float value)
    {
        const AudioUnitParameter parameter{&unit, id, kAudioUnitScope_Global, 0};
        EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, value, 0), noErr);
    }

    CFManualClock clock;
    ToneUnit unit{48000.0};
    AUEventListenerRef listener = nullptr;
    std::string log;
};

TEST_F(ToneUnitEvents, CarryTheValueHeld)
{
    set(kParamStartFrequency, 99999.0f);
    set(kParamWaveform, 1.5f);
    EXPECT_EQ(takeLog(), "set1=24000 set0=1 ");
}

TEST_F(ToneUnitEvents, ALowerSampleRateLowersFrequencies)
{
    set(kParamStartFrequency, 20000.0f);
    takeLog();
    EXPECT_EQ(SetSampleRate(unit, 8000.0), noErr);
    EXPECT_EQ(takeLog(), "property2 set1=4000 set3=4000 ");
    EXPECT_EQ(SetSampleRate(unit, 96000.0), noErr);
    EXPECT_EQ(takeLog(), "property2 ") << "nothing springs back";
    EXPECT_EQ(SetSampleRate(unit, 0.0), noErr);
    set(kParamStartFrequency, 99999.0f);
    EXPECT_EQ(takeLog(), "property2 set1=22050 ") << "an unknown rate counts as 44100";
}

TEST_F(ToneUnitEvents, RefusedSampleRatesChangeNothing)
{
    for (const double hz : {-44100.0, 0.5, 768001.0, double(kNaN), double(kInfinity)}) {
        SCOPED_TRACE(hz);
        EXPECT_EQ(SetSampleRate(unit, hz), kAudioUnitErr_InvalidPropertyValue);
        EXPECT_EQ(SampleRateOf(unit), 48000.0);
        EXPECT_EQ(ToneUnit(hz).settings().sampleRate, 0.0);
    }
    EXPECT_EQ(takeLog(), "");
}

TEST_F(ToneUnitEvents, AnnounceProperties)
{
    const std::uint64_t samples = 1'234'567'890'123;
    EXPECT_EQ(AudioUnitSetProperty(&unit, kPropertyInputLength, 0, 0, &samples, sizeof samples), noErr);
    EXPECT_EQ(takeLog(), "property3020 ");
    std::uint64_t held = 0;
    std::uint32_t size = 16;
    EXPECT_EQ(AudioUnitGetProperty(&unit, kPropertyInputLength, 0, 0, &held, &size), noErr);
    EXPECT_EQ(held, samples);
    EXPECT_EQ(size, sizeof samples);
}

TEST(ToneUnit, AnswersAStatusToWrongQuestions)
{
    ToneUnit unit;
    unsigned char buffer[256] = {};
    const auto get = [&](AudioUnitPropertyID property, std::uint32_t room, AudioUnitElement element = 0,
                         AudioUnitScope scope = 0) {
        return AudioUnitGetProperty(&unit, property, scope, element, buffer, &room);
    };
    const auto set = [&](AudioUnitPropertyID property, std::uint32_t size, AudioUnitElement element = 0) {
        return AudioUnitSetProperty(&unit, property, 0, element, buffer, size);
    };
    const auto setParameter = [&](AudioUnitParameterID id, AudioUnitElement element, AudioUnitScope scope) {
        return AudioUnitSetParameter(&unit, id, scope, element, 1.0f, 0);
    };
    EXPECT_EQ(get(2, 7), kAudioUnitErr_InvalidPropertyValue) << "rate needs 8";
    EXPECT_EQ(get(4, sizeof(AudioUnitParameterInfo) - 1), kAudioUnitErr_InvalidPropertyValue)
        << "info needs its record";
    EXPECT_EQ(get(16, 4), kAudioUnitErr_InvalidPropertyValue) << "strings need a pointer";
    EXPECT_EQ(get(3020, 4), kAudioUnitErr_InvalidPropertyValue) << "length needs 8";
    EXPECT_EQ(get(9000, 3), kAudioUnitErr_InvalidPropertyValue) << "format needs 4";
    EXPECT_EQ(set(2, 4), kAudioUnitErr_InvalidPropertyValue) << "rate takes 8";
    EXPECT_EQ(set(9000, 8), kAudioUnitErr_InvalidPropertyValue) << "format takes 4";
    EXPECT_EQ(get(77, 256), kAudioUnitErr_InvalidProperty) << "no such property";
    EXPECT_EQ(set(77, 4), kAudioUnitErr_InvalidProperty) << "no such property to set";
    EXPECT_EQ(set(4, sizeof(AudioUnitParameterInfo)), kAudioUnitErr_PropertyNotWritable) << "info is read only";
    EXPECT_EQ(get(16, 8, kParamGain), kAudioUnitErr_InvalidProperty) << "gain has no names";
    EXPECT_EQ(get(4, 256, kParamCount), kAudioUnitErr_InvalidElement) << "no eighth parameter";
    EXPECT_EQ(get(2, 8, 1), kAudioUnitErr_InvalidElement) << "one element only";
    EXPECT_EQ(get(2, 8, 0, 1), kAudioUnitErr_InvalidElement) << "one scope only";
    EXPECT_EQ(set(2, 8, 1), kAudioUnitErr_InvalidElement) << "one element to set";
    EXPECT_EQ(setParameter(kParamCount, 0, 0), kAudioUnitErr_InvalidParameter) << "parameter 7";
    EXPECT_EQ(setParameter(kParamGain, 1, 0), kAudioUnitErr_InvalidElement) << "parameter of an element";
    EXPECT_EQ(setParameter(kParamGain, 0, 1), kAudioUnitErr_InvalidElement) << "parameter of a scope";
}

TEST(ToneUnit, DescribesTheWaveformsToAnEditor)
{
    ToneUnit unit;
    AudioUnitParameterInfo info{};
    std::uint32_t size = sizeof info;
    ASSERT_EQ(AudioUnitGetProperty(&unit, kAudioUnitProperty_ParameterInfo, 0, kParamWaveform, &info, &size), noErr);
    CFArrayRef names = nullptr;
    size = sizeof names;
    ASSERT_EQ(AudioUnitGetProperty(&unit, kAudioUnitProperty_ParameterValueStrings, 0, kParamWaveform, &names, &size),
              noErr);
    EXPECT_EQ(float(CFArrayGetCount(names)), info.maxValue - info.minValue + 1.0f) << "a name for each value";
    std::string all;
    for (const auto& name : *names) all += asKind<NSString>(name.get())->utf8() + " ";
    EXPECT_EQ(all, "Sine Triangle Square Sawtooth ");
    CFRelease(names);
}

TEST(ToneUnit, TellsItsObserverWhatReachesIt)
{
    struct Trace final : ToneUnitObserver {
        void gestureBegan(AudioUnitParameterID id) override { log << "begin" << id << ' '; }
        void parameterSet(AudioUnitParameterID id, float asked) override { log << "set" << id << '=' << asked << ' '; }
        void gestureEnded(AudioUnitParameterID id) override { log << "end" << id << ' '; }
        std::ostringstream log;
    } trace;
    ToneUnit unit;
    unit.setObserver(&trace);
    const AudioUnitParameter gain{&unit, kParamGain, 0, 0};
    AudioUnitEvent event{kAudioUnitEvent_BeginParameterChangeGesture, {.mParameter = gain}};
    AUEventListenerNotify(nullptr, nullptr, &event);
    AUParameterSet(nullptr, nullptr, &gain, 30.0f, 0);
    event.mEventType = kAudioUnitEvent_EndParameterChangeGesture;
    AUEventListenerNotify(nullptr, nullptr, &event);
    AudioUnitSetParameter(&unit, kParamCount, 0, 0, 1.0f, 0);
    EXPECT_EQ(trace.log.str(), "begin5 set5=30 end5 ");
}

} // namespace
