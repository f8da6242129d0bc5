// The laws of the adapter: what the host is told of an edit, and what the editor is told of the host.

#include "LV2/PortUnit.h"

#include "AudioUnit/AUEventListener.h"
#include "Support/Script.h"

#include <charconv>
#include <cmath>

namespace {

std::string Number(float value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// A unit with its host and an editor, who both write down what they are told. In scripts "set:1=450" is the editor's,
/// "report:1=450" the host's; "wait:2" lets two pauses go by. "hear" gives the editor its turn and notes a bar,
/// "echoes" waits until none is expected any more, "held:1" notes what the unit holds, and "forget" drops what was
/// noted.
struct PortRig final : private PortHost {
    PortRig()
    {
        const auto portOf = [](const Step& step) { return static_cast<AudioUnitParameterID>(step.numbers().at(0)); };
        const auto valueOf = [](const Step& step) { return static_cast<float>(step.numbers().at(1)); };
        script.verbs = {
            {"begin", [=, this](const Step& step) { unit.ParameterGesture(portOf(step), 0, 0, true); }},
            {"end", [=, this](const Step& step) { unit.ParameterGesture(portOf(step), 0, 0, false); }},
            {"set", [=, this](const Step& step) { set(portOf(step), valueOf(step)); }},
            {"report", [=, this](const Step& step) { unit.portChanged(portOf(step), valueOf(step)); }},
            {"wait", [](const Step& step) { run(step.number() * PortUnit::kPauseSeconds); }},
            {"close", [this](const Step&) { unit.close(); }},
            {"hear", [this](const Step&) { run(0.1), log += "| "; }},
            {"echoes", [](const Step&) { run(PortEchoes::kSeconds); }},
            {"held", [=, this](const Step& step) { note("held", portOf(step), held(portOf(step))); }},
            {"forget", [this](const Step&) { log.clear(); }},
            {"echoing", [this](const Step&) { echoesAtOnce = true; }},
        };
        AUEventListenerCreate(
            [](void* self, void*, const AudioUnitEvent* event, std::uint64_t, float value) {
                auto& rig = *static_cast<PortRig*>(self);
                if (event->mEventType == kAudioUnitEvent_PropertyChange)
                    rig.note("property", event->mArgument.mProperty.mPropertyID);
                else
                    rig.note("heard", event->mArgument.mParameter.mParameterID, value);
            },
            this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes, 0.05f, 0.05f, &listener);
        for (AudioUnitParameterID id = 0; id < kParamCount; ++id)
            listen({kAudioUnitEvent_ParameterValueChange, {.mParameter = {&unit, id, 0, 0}}});
        listen({kAudioUnitEvent_PropertyChange, {.mProperty = {&unit, kPropertyTimeFormat, 0, 0}}});
    }
    ~PortRig() { AUListenerDispose(listener); }

    std::string play(std::string_view steps)
    {
        script.play(steps);
        return std::exchange(log, {});
    }
    PortHost& host() { return *this; }
    static void run(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

    const CFManualClock clock;
    std::string log;
    PortUnit unit{*this, 48000.0};

private:
    void writePort(AudioUnitParameterID port, float value) override
    {
        note("write", port, value);
        if (echoesAtOnce) unit.portChanged(port, value);
    }
    void touchPort(AudioUnitParameterID port, bool isHeld) override { note(isHeld ? "touch" : "leave", port); }
    void writeTimeFormat(std::uint32_t format) override { note("format", format); }

    void note(const char* what, std::uint32_t id) { log += what + (":" + std::to_string(id)) + " "; }
    void note(const char* what, std::uint32_t id, float value)
    {
        log += what + (":" + std::to_string(id)) + "=" + Number(value) + " ";
    }
    void listen(const AudioUnitEvent& event) { AUEventListenerAddEventType(listener, this, &event); }
    void set(AudioUnitParameterID id, float value)
    {
        const AudioUnitParameter parameter{&unit, id, kAudioUnitScope_Global, 0};
        AUParameterSet(listener, this, &parameter, value, 0); // as the editor: it is not told of its own edits
    }
    float held(AudioUnitParameterID id)
    {
        float value = std::nanf("");
        EXPECT_EQ(AudioUnitGetParameter(&unit, id, kAudioUnitScope_Global, 0, &value), noErr);
        return value;
    }

    AUEventListenerRef listener = nullptr;
    Script script;
    bool echoesAtOnce = false;
};

TEST(PortUnit, FramesEachEditOnce)
{
    ExpectLogs<PortRig>({
        {"a drag, in which a person holds still", "begin:1 set:1=450 wait:2 set:1=460 end:1",
         "touch:1 write:1=450 write:1=460 leave:1 "},
        {"a press that moves nothing", "begin:1 set:1=440 end:1", ""},
        {"keys in a row", "set:1=450 wait:0.5 set:1=460 wait:0.5 set:1=470 wait:1.5",
         "touch:1 write:1=450 write:1=460 write:1=470 leave:1 "},
        {"two keys with a pause between them", "set:1=450 wait:1.5 set:1=460 wait:1.5",
         "touch:1 write:1=450 leave:1 touch:1 write:1=460 leave:1 "},
        {"a drag after a key", "set:1=450 begin:1 wait:2 set:1=460 end:1", "touch:1 write:1=450 write:1=460 leave:1 "},
        {"keys on two controls", "set:1=450 set:5=-6 wait:2",
         "touch:1 write:1=450 touch:5 write:5=-6 leave:1 leave:5 "},
        {"a key on one control while another is held", "begin:1 set:1=450 set:5=-6 wait:2 set:1=460 end:1",
         "touch:1 write:1=450 touch:5 write:5=-6 leave:5 write:1=460 leave:1 "},
        {"a text field", "begin:5 set:5=-3 end:5 wait:2", "touch:5 write:5=-3 leave:5 "},
        {"gestures of two controls of one parameter, and an end too many",
         "begin:6 begin:6 set:6=3 end:6 set:6=4 end:6 end:6", "touch:6 write:6=3 write:6=4 leave:6 "},
        {"a value that is held, and one that is held as 0", "set:1=440 set:0=0.9 wait:2", ""},
        {"values that don't fit", "set:1=1e9 set:5=nan set:9=1 wait:2", "touch:1 write:1=24000 leave:1 "},
        {"an editor that closes within an edit leaves at once", "set:1=450 begin:5 set:5=-6 begin:6 close",
         "touch:1 write:1=450 touch:5 write:5=-6 leave:1 leave:5 "},
    });
}

TEST(PortUnit, TellsTheEditorWhatTheHostReports)
{
    ExpectLogs<PortRig>({
        {"the last value of each, as it is held", "report:1=1000 report:1=2000 report:0=2.9 hear held:1",
         "heard:1=2000 heard:0=2 | held:1=2000 "},
        {"nothing that is held already, is no number or no parameter", "report:5=-12 report:6=nan report:7=1 hear",
         "| "},
        {"no more than fits", "report:3=inf hear", "heard:3=24000 | "},
    });
}

TEST(PortUnit, KnowsTheEchoesOfItsOwnWrites)
{
    static constexpr const char* kWrites = "begin:1 set:1=1000 set:1=2000 set:1=1000 set:1=3000 end:1 forget ";
    static const struct {
        const char* why;
        const char* reports;
        const char* log; ///< what is heard at once, what after a second, and what is held
    } kRows[] = {
        {"all", "report:1=1000 report:1=2000 report:1=1000 report:1=3000", "| | held:1=3000 "},
        {"the last", "report:1=3000", "| | held:1=3000 "},
        {"none", "", "| | held:1=3000 "},
        {"some, and another of the host's", "report:1=1000 report:1=2000 report:1=500", "heard:1=500 | | held:1=500 "},
        {"one of the host's that comes before the echoes",
         "report:1=500 report:1=1000 report:1=2000 report:1=1000 report:1=3000", "heard:1=3000 | | held:1=3000 "},
        {"the last, and one of the host's that equals a write before it", "report:1=3000 report:1=2000",
         "heard:1=2000 | | held:1=2000 "},
        {"one of the host's that a write happens to equal", "report:1=2000", "| heard:1=2000 | held:1=2000 "},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        PortRig rig;
        EXPECT_EQ(rig.play(std::string(kWrites) + row.reports + " hear echoes hear held:1"), row.log);
    }
    ExpectLogs<PortRig>({
        {"a report long after the write is the host's own",
         "set:1=1000 echoes echoes forget report:1=2000 report:1=1000 hear", "heard:1=1000 | "},
        {"echoes from within the writes; then it is the host's",
         "echoing begin:1 set:1=1000 set:1=2000 end:1 forget hear report:1=1000 hear", "| heard:1=1000 | "},
    });
}

TEST(PortUnit, TheHostDoesNotFightADrag)
{
    ExpectLogs<PortRig>({
        {"a report before a later move", "begin:1 set:1=1000 report:1=500 set:1=2000 forget hear end:1 hear held:1",
         "| leave:1 | held:1=2000 "},
        {"a report before an echo", "begin:1 set:1=1000 report:1=500 report:1=1000 forget hear end:1 hear held:1",
         "| leave:1 | held:1=1000 "},
        {"a report after the last move", "begin:1 set:1=1000 report:1=500 forget hear end:1 hear held:1",
         "| leave:1 heard:1=500 | held:1=500 "},
        {"a report before the first move", "begin:1 report:1=600 hear end:1 hear held:1",
         "| heard:1=600 | held:1=600 "},
    });
}

TEST(PortUnit, TheTimeFormatTravelsBothWays)
{
    PortRig rig;
    std::uint32_t format = 99, size = sizeof format;
    const auto setFormat = [&](std::uint32_t value) {
        return AudioUnitSetProperty(&rig.unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &value, sizeof value);
    };
    const auto get = [&] {
        EXPECT_EQ(AudioUnitGetProperty(&rig.unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, &size),
                  noErr);
        return format;
    };
    EXPECT_EQ(get(), kTonaroDefaultFormat);
    EXPECT_EQ(setFormat(5), noErr);
    EXPECT_EQ(setFormat(5), noErr);
    EXPECT_EQ(setFormat(21), kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(rig.play("hear"), "format:5 property:9000 | ");
    for (const std::uint32_t reported : {5U, 7U, 21U}) rig.unit.timeFormatChanged(reported);
    EXPECT_EQ(rig.play("hear"), "property:9000 | ");
    EXPECT_EQ(get(), 7U);
}

TEST(PortUnit, TheRateIsTheHosts)
{
    PortRig rig;
    double rate = 0;
    std::uint32_t size = sizeof rate;
    EXPECT_EQ(AudioUnitGetProperty(&rig.unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, &size),
              noErr);
    EXPECT_EQ(rate, 48000.0);
    EXPECT_EQ(AudioUnitSetProperty(&rig.unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, size),
              kAudioUnitErr_PropertyNotWritable);
    PortUnit high(rig.host(), 768000.0);
    high.portChanged(1, 200000);
    float hz = 0;
    AudioUnitGetParameter(&high, 1, kAudioUnitScope_Global, 0, &hz);
    EXPECT_EQ(hz, kTonaroHighestPortHz);
}

} // namespace
