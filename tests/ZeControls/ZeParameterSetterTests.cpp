#include "SliderRig.h"

#include "Slider/ZeParameterSetter.h"

namespace {

/// A unit that logs what reaches it, and refuses sets when told to.
class LoggingUnit final : public ComponentInstanceRecord {
public:
    OSStatus GetProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, void*, std::uint32_t*) override
    {
        return kAudioUnitErr_InvalidProperty;
    }
    OSStatus SetProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, const void*, std::uint32_t) override
    {
        return kAudioUnitErr_InvalidProperty;
    }
    OSStatus GetParameter(AudioUnitParameterID, AudioUnitScope, AudioUnitElement, float* value) override
    {
        *value = mHeld;
        return noErr;
    }
    OSStatus SetParameter(AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, float value,
                          std::uint32_t) override
    {
        std::ostringstream text;
        text << "set(" << id << ',' << value;
        if (scope || element) text << ",scope " << scope << " element " << element;
        log.add(text.str() + ")");
        if (refuses) return kAudioUnitErr_InvalidParameter;
        mHeld = value;
        return noErr;
    }
    void ParameterGesture(AudioUnitParameterID id, AudioUnitScope, AudioUnitElement, bool begins) override
    {
        log.add(begins ? "begin" : "end", id);
        if (begins && whenItBegins) std::exchange(whenItBegins, nullptr)();
    }

    std::function<void()> whenItBegins;
    Log log;
    bool refuses = false;

private:
    float mHeld = 0;
};

class ZeParameterSetterTest : public testing::Test {
protected:
    RetainPtr<ZeParameterSetter> makeSetter(AUEventListenerRef listener = nullptr)
    {
        static constexpr AudioUnitParameterID kIDs[] = {1, 5, 5};
        return make<ZeParameterSetter>(&ZeParameterSetter::initWithAudioUnit, &unit, listener, kIDs, 3U);
    }
    static void post(const char* name, ZeSlider* slider)
    {
        NSNotificationCenter::defaultCenter()->postNotificationName(NSString::string(name).get(), slider);
    }

    const NSAutoreleasePool pool;
    LoggingUnit unit;
    RetainPtr<ZeSlider> slider = make<ZeSlider>(CGRectMake(0, 0, 100, 20));
    RetainPtr<NSObject> other = make<LevelModel>();
    RetainPtr<ZeParameterSetter> setter = makeSetter();
};

TEST_F(ZeParameterSetterTest, FramesEachSetOfOtherSendersItself)
{
    setter->addZeSlider(slider, 5);
    setter->setParameter(1, 440, other);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,440) end(1)");
    setter->setParameter(1, 441, nullptr);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,441) end(1)");
    setter->setParameter(1, 442, slider);
    EXPECT_EQ(unit.log.take(), "set(1,442)") << "a registered slider is framed by its press, whatever it sets";
    unit.refuses = true;
    setter->setParameter(1, 440, other);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,440) end(1)") << "a refused set ends its gesture too";
}

TEST_F(ZeParameterSetterTest, EndsTheGestureInWhichItIsReleased)
{
    setter->addZeSlider(slider, 5);
    unit.whenItBegins = [this] { setter.reset(); };
    setter.get()->setParameter(1, 440, other);
    EXPECT_FALSE(setter);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,440) end(1)");
}

TEST_F(ZeParameterSetterTest, IgnoresUnknownParameters)
{
    setter->setParameter(2, 1, other);
    setter->addZeSlider(slider, 2);
    post(ZeSliderMouseDownNotification, slider);
    EXPECT_EQ(unit.log.take(), "");
}

TEST_F(ZeParameterSetterTest, SetsOtherScopesOnTheUnitDirectly)
{
    setter->setParameter(1, 440, other, 3, 0);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,440,scope 0 element 3) end(1)");
    setter->setParameter(1, 441, other, 0, 2);
    EXPECT_EQ(unit.log.take(), "begin(1) set(1,441,scope 2 element 0) end(1)");
}

TEST_F(ZeParameterSetterTest, APressOfARegisteredSliderIsAGesture)
{
    setter->addZeSlider(slider, 1);
    setter->addZeSlider(slider, 5);
    post(ZeSliderMouseDownNotification, slider);
    post(ZeSliderMouseUpNotification, slider);
    EXPECT_EQ(unit.log.take(), "begin(5) begin(5) end(5) end(5)")
        << "registered twice: observed twice, for the last id";

    const auto stranger = make<ZeSlider>(CGRectMake(0, 0, 100, 20));
    post(ZeSliderMouseDownNotification, stranger);
    EXPECT_EQ(unit.log.take(), "");
}

TEST_F(ZeParameterSetterTest, HearsNothingOnceReleased)
{
    setter->addZeSlider(slider, 1);
    setter.reset();
    post(ZeSliderMouseDownNotification, slider);
    EXPECT_EQ(unit.log.take(), "");
}

/// Registers values and gestures of parameter 1 for `object` and logs what comes.
class Listener {
public:
    Listener(AudioUnit unit, void* object)
    {
        AUEventListenerCreate(
            [](void* userData, void*, const AudioUnitEvent* event, std::uint64_t, float value) {
                static constexpr const char* kNames[] = {"value", "begin", "end", "property"};
                const AudioUnitParameter& parameter = event->mArgument.mParameter;
                static_cast<Log*>(userData)->add(
                    kNames[event->mEventType] + std::to_string(parameter.mScope * 10 + parameter.mElement), value);
            },
            &log, CFRunLoopGetCurrent(), kCFRunLoopCommonModes, 0, 0, &ref);
        for (const auto type : {kAudioUnitEvent_ParameterValueChange, kAudioUnitEvent_BeginParameterChangeGesture,
                                kAudioUnitEvent_EndParameterChangeGesture}) {
            AudioUnitEvent event{};
            event.mEventType = type;
            event.mArgument.mParameter = {unit, 1, 0, 0};
            AUEventListenerAddEventType(ref, object, &event);
        }
    }
    ~Listener() { AUListenerDispose(ref); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::string take()
    {
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.05, false);
        return log.take();
    }

    AUEventListenerRef ref = nullptr;
    Log log;
};

TEST_F(ZeParameterSetterTest, TellsEveryListenerButTheSendingPair)
{
    const CFManualClock clock;
    Listener own(&unit, other.get()), host(&unit, nullptr);
    setter = makeSetter(own.ref);
    setter->setParameter(1, 440, other);
    EXPECT_EQ(host.take(), "begin0(0) value0(440) end0(0)");
    EXPECT_EQ(own.take(), "");
    setter->setParameter(1, 441, slider);
    EXPECT_EQ(own.take(), "begin0(0) value0(441) end0(0)") << "the same listener hears another sender";
    EXPECT_EQ(host.take(), "begin0(0) value0(441) end0(0)");
    setter->setParameter(1, 442, slider, 7, 0);
    EXPECT_EQ(host.take(), "begin0(0) value0(442) end0(0)") << "the event names scope 0 and element 0";
}

} // namespace
