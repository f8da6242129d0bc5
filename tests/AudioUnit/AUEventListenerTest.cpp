#include "AudioUnit/AUEventListener.h"

#include "Support/Script.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cmath>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

constexpr float kIntervalSeconds = 0.05f;

/// Eight parameters that hold at most 100 and refuse not-a-number; writes gestures to the log.
struct Unit final : ComponentInstanceRecord {
    OSStatus GetProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, void*, std::uint32_t*) override
    {
        return kAudioUnitErr_InvalidProperty;
    }
    OSStatus SetProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, const void*, std::uint32_t) override
    {
        return kAudioUnitErr_InvalidProperty;
    }
    OSStatus GetParameter(AudioUnitParameterID parameter, AudioUnitScope, AudioUnitElement,
                          AudioUnitParameterValue* outValue) override
    {
        *outValue = values.at(parameter);
        if (const auto hook = std::exchange(afterRead, nullptr)) hook();
        return noErr;
    }
    OSStatus SetParameter(AudioUnitParameterID parameter, AudioUnitScope, AudioUnitElement,
                          AudioUnitParameterValue value, std::uint32_t) override
    {
        if (std::isnan(value)) return kAudioUnitErr_InvalidPropertyValue;
        values.at(parameter) = std::min(value, 100.0f);
        return noErr;
    }
    void ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope, AudioUnitElement, bool begins) override
    {
        if (log) *log += (begins ? "unit:begin" : "unit:end") + std::to_string(parameter) + " ";
        if (!begins)
            if (const auto hook = std::exchange(atEnd, nullptr)) hook();
    }

    std::array<std::atomic<float>, 8> values{};
    std::string* log = nullptr;
    std::function<void()> afterRead; ///< once: what another thread does just then
    std::function<void()> atEnd;     ///< once: what the unit does when a gesture ends
};

AudioUnitEvent ParameterEvent(AudioUnit unit, AudioUnitEventType type, AudioUnitParameterID id)
{
    return {type, {.mParameter = {unit, id, kAudioUnitScope_Global, 0}}};
}

AudioUnitEvent PropertyEvent(AudioUnit unit, AudioUnitPropertyID id)
{
    return {kAudioUnitEvent_PropertyChange, {.mProperty = {unit, id, kAudioUnitScope_Global, 0}}};
}

/// Somebody who listens, and writes what it hears to a log: "view:set1=5" is object `view`, parameter 1, value 5.
struct Listener {
    explicit Listener(std::string& theLog) : log(theLog)
    {
        EXPECT_EQ(AUEventListenerCreate(&Listener::hear, this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes,
                                        kIntervalSeconds, kIntervalSeconds, &ref),
                  noErr);
    }
    ~Listener()
    {
        if (ref) dispose();
    }
    void dispose() { EXPECT_EQ(AUListenerDispose(std::exchange(ref, nullptr)), noErr); }

    void add(const char* object, const AudioUnitEvent& event) const
    {
        EXPECT_EQ(AUEventListenerAddEventType(ref, const_cast<char*>(object), &event), noErr);
    }
    void addValue(const char* object, AudioUnit unit, AudioUnitParameterID id) const
    {
        add(object, ParameterEvent(unit, kAudioUnitEvent_ParameterValueChange, id));
    }
    void addGestures(const char* object, AudioUnit unit, AudioUnitParameterID id) const
    {
        add(object, ParameterEvent(unit, kAudioUnitEvent_BeginParameterChangeGesture, id));
        add(object, ParameterEvent(unit, kAudioUnitEvent_EndParameterChangeGesture, id));
    }

    static void hear(void* userData, void* object, const AudioUnitEvent* event, std::uint64_t, float value)
    {
        auto& self = *static_cast<Listener*>(userData);
        static const char* const kNames[] = {"set", "begin", "end", "property"};
        const bool isProperty = event->mEventType == kAudioUnitEvent_PropertyChange;
        std::ostringstream entry;
        entry << static_cast<const char*>(object) << ':' << kNames[event->mEventType]
              << (isProperty ? event->mArgument.mProperty.mPropertyID : event->mArgument.mParameter.mParameterID);
        if (event->mEventType == kAudioUnitEvent_ParameterValueChange) entry << '=' << value;
        self.log += entry.str() + " ";
        if (self.then) self.then(value);
    }

    std::string& log;
    AUEventListenerRef ref = nullptr;
    std::function<void(float)> then;
};

constexpr const char* kView = "view";
constexpr const char* kOther = "other";
constexpr const char* kNobody = "nobody"; // is registered nowhere

/// A unit and who listens to it. In scripts "listen:1@view" registers the object "view" for values of parameter 1,
/// "second:1@view" that of a second listener; "set:1=5@view" sets a value as that object, "tell:2" tells that a
/// property has changed, and "wait:0.04" notes a bar behind what was heard meanwhile.
struct Rig {
    Rig()
    {
        unit.log = &log;
        script.verbs = {
            {"listen", [this](const Step& step) { listener.addValue(objectOf(step), &unit, idOf(step)); }},
            {"second", [this](const Step& step) { second.addValue(objectOf(step), &unit, idOf(step)); }},
            {"gestures", [this](const Step& step) { listener.addGestures(objectOf(step), &unit, idOf(step)); }},
            {"properties", [this](const Step& step) { listener.add(kView, PropertyEvent(&unit, idOf(step))); }},
            {"tell", [this](const Step& step) { notify(PropertyEvent(&unit, idOf(step))); }},
            {"tellOfAnother", [this](const Step& step) { notify(PropertyEvent(&another, idOf(step))); }},
            {"begin", [this](const Step& step) { gesture(idOf(step), true); }},
            {"end", [this](const Step& step) { gesture(idOf(step), false); }},
            {"set", [this](const Step& step) { setAs(objectOf(step), idOf(step), step.numbers().at(1)); }},
            {"wait", [this](const Step& step) { run(step.number()), log += "| "; }},
            {"busy", [this](const Step&) { log += AUEventListenersArePending() ? "busy " : "idle "; }},
            {"|", [this](const Step&) { log += "| "; }},
        };
    }
    static AudioUnitParameterID idOf(const Step& step) { return static_cast<AudioUnitParameterID>(step.number()); }
    static const char* objectOf(const Step& step)
    {
        for (const char* object : {kView, kOther, kNobody})
            if (step.what.ends_with(object)) return object;
        return nullptr;
    }
    void setAs(const char* object, AudioUnitParameterID id, double value)
    {
        set(id, static_cast<float>(value), object ? listener.ref : nullptr, object);
    }
    /// Does the steps. @return what was heard
    std::string play(std::string_view steps)
    {
        script.play(steps);
        return takeLog();
    }

    void set(AudioUnitParameterID id, float value, AUEventListenerRef from = nullptr, const char* object = nullptr)
    {
        const AudioUnitParameter parameter{&unit, id, kAudioUnitScope_Global, 0};
        EXPECT_EQ(AUParameterSet(from, const_cast<char*>(object), &parameter, value, 0), noErr);
    }
    void notify(const AudioUnitEvent& event, AUEventListenerRef from = nullptr, const char* object = nullptr)
    {
        EXPECT_EQ(AUEventListenerNotify(from, const_cast<char*>(object), &event), noErr);
    }
    void gesture(AudioUnitParameterID id, bool begins, AUEventListenerRef from = nullptr, const char* object = nullptr)
    {
        notify(ParameterEvent(&unit,
                              begins ? kAudioUnitEvent_BeginParameterChangeGesture
                                     : kAudioUnitEvent_EndParameterChangeGesture,
                              id),
               from, object);
    }
    void edit(AudioUnitParameterID id, float value)
    {
        gesture(id, true);
        set(id, value);
        gesture(id, false);
    }
    static void run(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }
    std::string takeLog() { return std::exchange(log, {}); }
    std::string logOf(double seconds)
    {
        run(seconds);
        return takeLog();
    }

    CFManualClock clock;
    std::string log;
    Unit unit, another;
    Listener listener{log}, second{log};
    Script script;
};

struct AUEventListenerTest : testing::Test, Rig {};

TEST(AUEventListener, TellsEachListenerWhatItAskedFor)
{
    ExpectLogs<Rig>({
        {"promptly after quiet, never from inside the post; then once per interval",
         "listen:1@view listen:2@view set:1=1 | wait:0 set:1=2 set:2=7 set:1=3 wait:0.04 set:1=4 wait:0.02 busy wait:1 "
         "set:1=5 wait:0",
         "| view:set1=1 | | view:set1=4 view:set2=7 | idle | view:set1=5 | "},
        {"the value that the unit holds", "listen:1@view set:1=1000 wait:1", "view:set1=100 | "},
        {"not the pair that sends", "listen:1@view listen:1@other second:1@view set:1=1@view wait:1",
         "other:set1=1 view:set1=1 | "},
        {"all, each once, where the sender is registered nowhere",
         "listen:1@view listen:1@view listen:1@other second:1@view set:1=2@nobody wait:1",
         "view:set1=2 other:set1=2 view:set1=2 | "},
        {"not the newest sender", "listen:1@view listen:1@other set:1=1@view set:1=2@other wait:1", "view:set1=2 | "},
        {"the other, if the newest is the first", "listen:1@view listen:1@other set:1=3 set:1=4@view wait:1",
         "other:set1=4 | "},
        {"the unit at once; values apart by gestures where those are registered",
         "second:1@other listen:1@view listen:2@view gestures:1@view "
         "set:1=1 begin:1 set:1=2 set:2=9 set:1=3 end:1 begin:1 end:1 set:1=4 | wait:1",
         "unit:begin1 unit:end1 unit:begin1 unit:end1 | view:set1=1 view:begin1 view:set1=3 view:set2=9 view:end1 "
         "view:begin1 view:end1 view:set1=4 other:set1=4 | "},
        {"of each property once, and only those of the unit",
         "properties:2 properties:3020 tell:3020 tell:2 tell:2 tell:3020 tell:4 tellOfAnother:2 wait:1",
         "view:property3020 view:property2 | "},
    });
}

TEST_F(AUEventListenerTest, ValuesAreThoseTheUnitHolds)
{
    listener.addValue(kView, &unit, 1);
    const AudioUnitParameter parameter{&unit, 1, kAudioUnitScope_Global, 0};
    EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, std::nanf(""), 0), kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(logOf(1.0), "") << "a refused value is not told";
    unit.values[1] = 3;
    notify(ParameterEvent(&unit, kAudioUnitEvent_ParameterValueChange, 1));
    EXPECT_EQ(logOf(1.0), "view:set1=3 ");
}

TEST_F(AUEventListenerTest, AValueOvertakenByANewerOneIsDropped)
{
    listener.addValue(kView, &unit, 1);
    unit.afterRead = [this] { set(1, 2); };
    set(1, 1); // reads 1 back, but another thread sets and posts 2 before this is posted
    EXPECT_EQ(logOf(1.0), "view:set1=2 ");
    unit.afterRead = [this] {
        set(1, 4);
        run(0.0);
    };
    set(1, 3);
    EXPECT_EQ(logOf(1.0), "view:set1=4 ") << "also after the newer one went out";
}

TEST_F(AUEventListenerTest, WhatAUnitTellsAtTheEndOfAGestureIsNoPartOfIt)
{
    unit.atEnd = [this] { set(1, 7); }; // automation that waited for the hand to go
    EXPECT_EQ(play("listen:1@view gestures:1@view begin:1 set:1=5 end:1 | wait:1"),
              "unit:begin1 unit:end1 | view:begin1 view:set1=5 view:end1 view:set1=7 | ");
}

TEST_F(AUEventListenerTest, WhatACallbackPostsWaitsForTheNextRound)
{
    listener.then = [this](float value) {
        if (value < 3) set(1, value + 1);
    };
    EXPECT_EQ(play("listen:1@view set:1=1 wait:0.04 wait:0.05 wait:1"), "view:set1=1 | view:set1=2 | view:set1=3 | ");
}

TEST_F(AUEventListenerTest, ACallbackThatThrowsDelaysTheRest)
{
    listener.then = [this](float) {
        listener.then = nullptr;
        throw std::runtime_error("callback");
    };
    script.play("listen:1@view listen:1@other listen:2@view set:1=1 set:2=2");
    EXPECT_THROW(run(0.0), std::runtime_error);
    EXPECT_TRUE(AUEventListenersArePending());
    EXPECT_EQ(takeLog(), "view:set1=1 ");
    EXPECT_EQ(logOf(0.04), "");
    EXPECT_EQ(logOf(1.0), "other:set1=1 view:set2=2 ");
}

TEST_F(AUEventListenerTest, ADisposedListenerIsNeverCalled)
{
    listener.then = [this](float) { listener.dispose(); };
    EXPECT_EQ(play("listen:1@view listen:1@other set:1=1 wait:1"), "view:set1=1 | ") << "disposed in its own callback";

    script.play("second:1@view set:1=2");
    const AUEventListenerRef ref = second.ref;
    EXPECT_EQ(AUEventListenerCountEventTypes(ref), 1u);
    second.dispose(); // with an event pending
    EXPECT_FALSE(AUEventListenersArePending());
    EXPECT_EQ(logOf(1.0), "");
    set(1, 3, ref, kView); // a stale handle as the sender is nobody
    EXPECT_EQ(AUListenerDispose(ref), kAudio_ParamError);
    EXPECT_EQ(AUEventListenerCountEventTypes(ref), 0u);
}

TEST_F(AUEventListenerTest, AListenerMayEndAnotherInItsCallback)
{
    listener.then = [&](float) { second.dispose(); };
    EXPECT_EQ(play("listen:1@view second:1@other set:1=1 wait:1"), "view:set1=1 | ");
}

TEST_F(AUEventListenerTest, PendingEventsOutliveTheirUnit)
{
    auto mortal = std::make_unique<Unit>();
    listener.addValue(kView, mortal.get(), 1);
    const AudioUnitParameter parameter{mortal.get(), 1, kAudioUnitScope_Global, 0};
    EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, 6, 0), noErr);
    mortal.reset();
    EXPECT_EQ(logOf(1.0), "view:set1=6 ");
}

TEST_F(AUEventListenerTest, AStuckLoopLosesTheOldestGesturesWhole)
{
    listener.addValue(kView, &unit, 1);
    listener.addGestures(kView, &unit, 1);
    unit.log = nullptr;
    for (int i = 0; i < 300; ++i) edit(1, static_cast<float>(i % 100));
    gesture(1, true); // as wide as the limit: 256 gestures, of which the last is open
    run(1.0);
    std::istringstream heard(takeLog());
    int open = 0;
    int gestures = 0;
    std::string last;
    for (std::string word; heard >> word; last = word) {
        open += (word == "view:begin1") - (word == "view:end1");
        gestures += word == "view:begin1";
        EXPECT_TRUE(open == 0 || open == 1) << "begin and end alternate";
        EXPECT_FALSE(last.starts_with("view:set") && word.starts_with("view:set")) << "values side by side merge";
    }
    EXPECT_EQ(gestures, 256);
    EXPECT_EQ(last, "view:begin1");

    for (int i = 0; i < 2000; ++i) gesture(1, true); // nobody ends these
    run(1.0);
    const std::string begins = takeLog();
    EXPECT_EQ(begins.size(), 512 * std::string_view("view:begin1 ").size());
}

TEST_F(AUEventListenerTest, BadArgumentsAreRefused)
{
    const AudioUnitEvent good = ParameterEvent(&unit, kAudioUnitEvent_ParameterValueChange, 1);
    const AudioUnitEvent noUnit = ParameterEvent(nullptr, kAudioUnitEvent_ParameterValueChange, 1);
    const AudioUnitEvent noType = ParameterEvent(&unit, static_cast<AudioUnitEventType>(4), 1);
    const AudioUnitParameter noUnitParameter{};
    AUEventListenerRef made = listener.ref;
    const auto create = [&](AUEventListenerProc proc, CFRunLoopRef loop, float interval, AUEventListenerRef* out) {
        return AUEventListenerCreate(proc, nullptr, loop, kCFRunLoopCommonModes, interval, 0.0f, out);
    };
    CFRunLoopRef loop = CFRunLoopGetCurrent();
    const struct {
        const char* why;
        OSStatus status;
    } kRows[] = {
        {"no callback", create(nullptr, loop, 0.0f, &made)},
        {"no loop", create(&Listener::hear, nullptr, 0.0f, &made)},
        {"nowhere to put it", create(&Listener::hear, loop, 0.0f, nullptr)},
        {"negative interval", create(&Listener::hear, loop, -1.0f, &made)},
        {"interval is no number", create(&Listener::hear, loop, std::nanf(""), &made)},
        {"dispose of null", AUListenerDispose(nullptr)},
        {"register with null", AUEventListenerAddEventType(nullptr, nullptr, &good)},
        {"register nothing", AUEventListenerAddEventType(listener.ref, nullptr, nullptr)},
        {"register an unknown type", AUEventListenerAddEventType(listener.ref, nullptr, &noType)},
        {"notify nothing", AUEventListenerNotify(nullptr, nullptr, nullptr)},
        {"notify without unit", AUEventListenerNotify(nullptr, nullptr, &noUnit)},
        {"set nothing", AUParameterSet(nullptr, nullptr, nullptr, 0.0f, 0)},
        {"set without unit", AUParameterSet(nullptr, nullptr, &noUnitParameter, 0.0f, 0)},
        {"read from null", AudioUnitGetParameter(nullptr, 0, 0, 0, nullptr)},
    };
    for (const auto& row : kRows) EXPECT_EQ(row.status, kAudio_ParamError) << row.why;
    EXPECT_EQ(made, nullptr);
}

// On the system's clock, since other threads post.
TEST(AUEventListenerThreads, TheLastValueOfEveryParameterArrives)
{
    constexpr int kThreads = 4;
    constexpr int kSets = 3000;
    Unit unit;
    std::array<float, 2> heard{-1.0f, -1.0f};
    AUEventListenerRef listener = nullptr;
    ASSERT_EQ(AUEventListenerCreate(
                  [](void* userData, void*, const AudioUnitEvent* event, std::uint64_t, float value) {
                      auto& values = *static_cast<std::array<float, 2>*>(userData);
                      values.at(event->mArgument.mParameter.mParameterID) = value;
                  },
                  &heard, CFRunLoopGetCurrent(), kCFRunLoopCommonModes, 0.0f, 0.0f, &listener),
              noErr);
    for (const AudioUnitParameterID id : {0u, 1u}) {
        const AudioUnitEvent event = ParameterEvent(&unit, kAudioUnitEvent_ParameterValueChange, id);
        EXPECT_EQ(AUEventListenerAddEventType(listener, nullptr, &event), noErr);
    }
    std::atomic<int> running = kThreads;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < kSets; ++i) {
                const AudioUnitParameter parameter{&unit, static_cast<AudioUnitParameterID>(i % 2), 0, 0};
                AUParameterSet(nullptr, nullptr, &parameter, static_cast<float>((i * kThreads + t) % 100), 0);
            }
            --running;
        });
    const CFAbsoluteTime giveUp = CFAbsoluteTimeGetCurrent() + 60.0;
    while ((running > 0 || AUEventListenersArePending()) && CFAbsoluteTimeGetCurrent() < giveUp)
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, true);
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(heard[0], unit.values[0]);
    EXPECT_EQ(heard[1], unit.values[1]);
    EXPECT_EQ(AUListenerDispose(listener), noErr);
}

TEST(AUEventListenerThreads, PostingWhileListenersComeAndGo)
{
    Unit unit;
    std::atomic<bool> done = false;
    std::thread poster([&] {
        const AudioUnitParameter parameter{&unit, 1, 0, 0};
        for (int i = 0; !done; ++i) AUParameterSet(nullptr, nullptr, &parameter, static_cast<float>(i % 100), 0);
    });
    const AudioUnitEvent event = ParameterEvent(&unit, kAudioUnitEvent_ParameterValueChange, 1);
    for (int i = 0; i < 300; ++i) {
        bool alive = true;
        bool calledAfterEnd = false;
        auto check = [&] { calledAfterEnd |= !alive; };
        AUEventListenerRef listener = nullptr;
        ASSERT_EQ(AUEventListenerCreate([](void* userData, void*, const AudioUnitEvent*, std::uint64_t,
                                           float) { (*static_cast<decltype(check)*>(userData))(); },
                                        &check, CFRunLoopGetCurrent(), kCFRunLoopCommonModes, 0.0f, 0.0f, &listener),
                  noErr);
        EXPECT_EQ(AUEventListenerAddEventType(listener, nullptr, &event), noErr);
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1.0, true);
        EXPECT_EQ(AUListenerDispose(listener), noErr);
        alive = false;
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.0, false);
        EXPECT_FALSE(calledAfterEnd);
    }
    done = true;
    poster.join();
}

} // namespace
