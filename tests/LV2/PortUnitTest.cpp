// The laws of the adapter: what the host is told of an edit, and what the editor is told of the host.

#include "LV2/PortUnit.h"

#include "AudioUnit/AUEventListener.h"
#include "Support/Script.h"

#include <gmock/gmock.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Number(float value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// A host that writes down what it is told, and reports back as asked.
struct Host final : PortHost {
    void writePort(AudioUnitParameterID port, float value) override
    {
        log.push_back("write " + std::to_string(port) + " " + Number(value));
        if (echoesAtOnce) echoesAtOnce->portChanged(port, value);
    }
    void touchPort(AudioUnitParameterID port, bool isHeld) override
    {
        log.push_back((isHeld ? "touch " : "leave ") + std::to_string(port));
    }
    void writeTimeFormat(std::uint32_t format) override { log.push_back("format " + std::to_string(format)); }
    std::vector<std::string> taken() { return std::exchange(log, {}); }

    std::vector<std::string> log;
    PortUnit* echoesAtOnce = nullptr;
};

/// A unit, its host, and an editor that writes down what it hears. In scripts "set:1=450" is the editor's,
/// "report:1=450" the host's; "wait:2" lets two pauses go by.
class PortUnitTest : public testing::Test {
protected:
    PortUnitTest()
    {
        const auto portOf = [](const Step& step) { return static_cast<AudioUnitParameterID>(step.numbers().at(0)); };
        const auto valueOf = [](const Step& step) { return static_cast<float>(step.numbers().at(1)); };
        script.verbs = {
            {"begin", [=, this](const Step& step) { unit.ParameterGesture(portOf(step), 0, 0, true); }},
            {"end", [=, this](const Step& step) { unit.ParameterGesture(portOf(step), 0, 0, false); }},
            {"set", [=, this](const Step& step) { set(portOf(step), valueOf(step)); }},
            {"report", [=, this](const Step& step) { unit.portChanged(portOf(step), valueOf(step)); }},
            {"wait", [this](const Step& step) { wait(step.number() * PortUnit::kPauseSeconds); }},
            {"close", [this](const Step&) { unit.close(); }},
        };
        AUEventListenerCreate(
            [](void* self, void*, const AudioUnitEvent* event, std::uint64_t, float value) {
                auto& log = static_cast<PortUnitTest*>(self)->heard;
                if (event->mEventType == kAudioUnitEvent_PropertyChange)
                    log.push_back("property " + std::to_string(event->mArgument.mProperty.mPropertyID));
                else
                    log.push_back(std::to_string(event->mArgument.mParameter.mParameterID) + " " + Number(value));
            },
            this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes, 0.05f, 0.05f, &listener);
        for (AudioUnitParameterID id = 0; id < kParamCount; ++id)
            listen({kAudioUnitEvent_ParameterValueChange, {.mParameter = {&unit, id, 0, 0}}});
        listen({kAudioUnitEvent_PropertyChange, {.mProperty = {&unit, kPropertyTimeFormat, 0, 0}}});
    }
    ~PortUnitTest() override { AUListenerDispose(listener); }

    void listen(const AudioUnitEvent& event) { AUEventListenerAddEventType(listener, this, &event); }
    void set(AudioUnitParameterID id, float value)
    {
        const AudioUnitParameter parameter{&unit, id, kAudioUnitScope_Global, 0};
        AUParameterSet(listener, this, &parameter, value, 0); // as the editor: it is not told of its own edits
    }
    void wait(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }
    std::vector<std::string> hears()
    {
        wait(0.1);
        return std::exchange(heard, {});
    }
    float held(AudioUnitParameterID id)
    {
        float value = std::nanf("");
        EXPECT_EQ(AudioUnitGetParameter(&unit, id, kAudioUnitScope_Global, 0, &value), noErr);
        return value;
    }

    CFManualClock clock;
    Host host;
    PortUnit unit{host, 48000.0};
    AUEventListenerRef listener = nullptr;
    std::vector<std::string> heard;
    Script script;
};

TEST_F(PortUnitTest, FramesEachEditOnce)
{
    static const struct {
        const char* why;
        const char* script;
        std::vector<std::string> told;
    } kRows[] = {
        {"a drag, in which a person holds still",
         "begin:1 set:1=450 wait:2 set:1=460 end:1",
         {"touch 1", "write 1 450", "write 1 460", "leave 1"}},
        {"a press that moves nothing", "begin:1 set:1=440 end:1", {}},
        {"keys in a row",
         "set:1=450 wait:0.5 set:1=460 wait:0.5 set:1=470 wait:1.5",
         {"touch 1", "write 1 450", "write 1 460", "write 1 470", "leave 1"}},
        {"two keys with a pause between them",
         "set:1=450 wait:1.5 set:1=460 wait:1.5",
         {"touch 1", "write 1 450", "leave 1", "touch 1", "write 1 460", "leave 1"}},
        {"a drag after a key",
         "set:1=450 begin:1 wait:2 set:1=460 end:1",
         {"touch 1", "write 1 450", "write 1 460", "leave 1"}},
        {"keys on two controls",
         "set:1=450 set:5=-6 wait:2",
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 1", "leave 5"}},
        {"a key on one control while another is held",
         "begin:1 set:1=450 set:5=-6 wait:2 set:1=460 end:1",
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 5", "write 1 460", "leave 1"}},
        {"a text field", "begin:5 set:5=-3 end:5 wait:2", {"touch 5", "write 5 -3", "leave 5"}},
        {"gestures of two controls of one parameter, and an end too many",
         "begin:6 begin:6 set:6=3 end:6 set:6=4 end:6 end:6",
         {"touch 6", "write 6 3", "write 6 4", "leave 6"}},
        {"a value that is held, and one that is held as 0", "set:1=440 set:0=0.9 wait:2", {}},
        {"values that don't fit", "set:1=1e9 set:5=nan set:9=1 wait:2", {"touch 1", "write 1 24000", "leave 1"}},
        {"an editor that closes within an edit leaves at once",
         "set:1=450 begin:5 set:5=-6 begin:6 close",
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 1", "leave 5"}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        script.play(row.script);
        EXPECT_EQ(host.taken(), row.told);
        unit.close();
        wait(2.0); // no echo is expected any more
        for (const ToneParameterFacts& facts : kToneParameters) unit.portChanged(facts.id, facts.defaultValue);
        host.taken();
        hears();
    }
}

TEST_F(PortUnitTest, TellsTheEditorWhatTheHostReports)
{
    script.play("report:1=1000 report:1=2000 report:0=2.9 report:5=-12 report:6=nan report:7=1"); // -12 is held already
    EXPECT_THAT(hears(), testing::UnorderedElementsAre("1 2000", "0 2"));
    EXPECT_EQ(held(1), 2000.0f);
    unit.portChanged(3, std::numeric_limits<float>::infinity());
    EXPECT_THAT(hears(), ElementsAre("3 24000"));
    EXPECT_THAT(host.taken(), IsEmpty());
}

TEST_F(PortUnitTest, KnowsTheEchoesOfItsOwnWrites)
{
    static const struct {
        const char* why;
        std::vector<float> reports;     ///< after the writes 1000, 2000, 1000, 3000
        std::vector<std::string> heard; ///< within a second
        std::vector<std::string> later; ///< after it
        float held;
    } kRows[] = {
        {"all", {1000, 2000, 1000, 3000}, {}, {}, 3000},
        {"the last", {3000}, {}, {}, 3000},
        {"none", {}, {}, {}, 3000},
        {"some, and another of the host's", {1000, 2000, 500}, {"1 500"}, {}, 500},
        {"one of the host's that comes before the echoes", {500, 1000, 2000, 1000, 3000}, {"1 3000"}, {}, 3000},
        {"one of the host's that a write happens to equal", {2000}, {}, {"1 2000"}, 2000},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        script.play("begin:1 set:1=1000 set:1=2000 set:1=1000 set:1=3000 end:1");
        for (const float hz : row.reports) unit.portChanged(1, hz);
        EXPECT_EQ(hears(), row.heard);
        wait(PortEchoes::kSeconds);
        EXPECT_EQ(hears(), row.later);
        EXPECT_EQ(held(1), row.held);
    }
}

TEST_F(PortUnitTest, AReportLongAfterTheWriteIsTheHostsOwn)
{
    set(1, 1000);
    wait(2 * PortEchoes::kSeconds);
    script.play("report:1=2000 report:1=1000");
    EXPECT_THAT(hears(), ElementsAre("1 1000"));
}

TEST_F(PortUnitTest, TakesEchoesFromWithinTheWrite)
{
    host.echoesAtOnce = &unit;
    script.play("begin:1 set:1=1000 set:1=2000 end:1");
    EXPECT_THAT(hears(), IsEmpty());
    unit.portChanged(1, 1000); // both echoes came, so this is the host's
    EXPECT_THAT(hears(), ElementsAre("1 1000"));
    host.echoesAtOnce = nullptr;
}

TEST_F(PortUnitTest, TheHostDoesNotFightADrag)
{
    static const struct {
        const char* why;
        const char* drag;
        std::vector<std::string> heardAfterwards;
        float held;
    } kRows[] = {
        {"a report before a later move", "begin:1 set:1=1000 report:1=500 set:1=2000", {}, 2000},
        {"a report before an echo", "begin:1 set:1=1000 report:1=500 report:1=1000", {}, 1000},
        {"a report after the last move", "begin:1 set:1=1000 report:1=500", {"1 500"}, 500},
        {"a report before the first move", "begin:1 report:1=600", {"1 600"}, 600},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        script.play(row.drag);
        EXPECT_THAT(hears(), IsEmpty());
        script.play("end:1");
        EXPECT_EQ(hears(), row.heardAfterwards);
        EXPECT_EQ(held(1), row.held);
        wait(2 * PortEchoes::kSeconds);
    }
}

TEST_F(PortUnitTest, TheTimeFormatTravelsBothWays)
{
    const auto setFormat = [&](std::uint32_t format) {
        return AudioUnitSetProperty(&unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, sizeof format);
    };
    std::uint32_t format = 99, size = sizeof format;
    EXPECT_EQ(AudioUnitGetProperty(&unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, &size), noErr);
    EXPECT_EQ(format, kTonaroDefaultFormat);
    EXPECT_EQ(setFormat(5), noErr);
    EXPECT_EQ(setFormat(5), noErr);
    EXPECT_EQ(setFormat(21), kAudioUnitErr_InvalidPropertyValue);
    EXPECT_THAT(host.taken(), ElementsAre("format 5"));
    EXPECT_THAT(hears(), ElementsAre("property 9000"));
    unit.timeFormatChanged(5);
    unit.timeFormatChanged(7);
    unit.timeFormatChanged(21);
    EXPECT_THAT(hears(), ElementsAre("property 9000"));
    EXPECT_EQ(AudioUnitGetProperty(&unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, &size), noErr);
    EXPECT_EQ(format, 7u);
    EXPECT_THAT(host.taken(), IsEmpty());
}

TEST_F(PortUnitTest, TheRateIsTheHosts)
{
    double rate = 0;
    std::uint32_t size = sizeof rate;
    EXPECT_EQ(AudioUnitGetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, &size),
              noErr);
    EXPECT_EQ(rate, 48000.0);
    EXPECT_EQ(AudioUnitSetProperty(&unit, kAudioUnitProperty_SampleRate, kAudioUnitScope_Global, 0, &rate, size),
              kAudioUnitErr_PropertyNotWritable);
    PortUnit high(host, 768000.0);
    high.portChanged(1, 200000);
    float hz = 0;
    AudioUnitGetParameter(&high, 1, kAudioUnitScope_Global, 0, &hz);
    EXPECT_EQ(hz, kTonaroHighestPortHz);
}

} // namespace
