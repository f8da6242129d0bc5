// The laws of the adapter: what the host is told of an edit, and what the editor is told of the host.

#include "LV2/PortUnit.h"

#include "AudioUnit/AUEventListener.h"

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

/// A unit, its host, and an editor that writes down what it hears.
class PortUnitTest : public testing::Test {
public: // for the tables
    PortUnitTest()
    {
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
    void begin(AudioUnitParameterID id) { unit.ParameterGesture(id, 0, 0, true); }
    void end(AudioUnitParameterID id) { unit.ParameterGesture(id, 0, 0, false); }
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

    static constexpr double kPause = PortUnit::kPauseSeconds;
    CFManualClock clock;
    Host host;
    PortUnit unit{host, 48000.0};
    AUEventListenerRef listener = nullptr;
    std::vector<std::string> heard;
};

TEST_F(PortUnitTest, FramesEachEditOnce)
{
    static const struct {
        const char* why;
        void (*edit)(PortUnitTest&);
        std::vector<std::string> told;
    } kRows[] = {
        {"a drag",
         [](PortUnitTest& t) {
             t.begin(1);
             t.set(1, 450);
             t.wait(2 * kPause); // a person who holds still
             t.set(1, 460);
             t.end(1);
         },
         {"touch 1", "write 1 450", "write 1 460", "leave 1"}},
        {"a press that moves nothing",
         [](PortUnitTest& t) {
             t.begin(1);
             t.set(1, 440);
             t.end(1);
         },
         {}},
        {"keys in a row",
         [](PortUnitTest& t) {
             for (const float hz : {450.0f, 460.0f, 470.0f}) {
                 t.set(1, hz);
                 t.wait(kPause / 2);
             }
             t.wait(kPause);
         },
         {"touch 1", "write 1 450", "write 1 460", "write 1 470", "leave 1"}},
        {"two keys with a pause between them",
         [](PortUnitTest& t) {
             t.set(1, 450);
             t.wait(1.5 * kPause);
             t.set(1, 460);
             t.wait(1.5 * kPause);
         },
         {"touch 1", "write 1 450", "leave 1", "touch 1", "write 1 460", "leave 1"}},
        {"a drag after a key",
         [](PortUnitTest& t) {
             t.set(1, 450);
             t.begin(1);
             t.wait(2 * kPause);
             t.set(1, 460);
             t.end(1);
         },
         {"touch 1", "write 1 450", "write 1 460", "leave 1"}},
        {"keys on two controls",
         [](PortUnitTest& t) {
             t.set(1, 450);
             t.set(5, -6);
             t.wait(2 * kPause);
         },
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 1", "leave 5"}},
        {"a key on one control while another is held",
         [](PortUnitTest& t) {
             t.begin(1);
             t.set(1, 450);
             t.set(5, -6);
             t.wait(2 * kPause);
             t.set(1, 460);
             t.end(1);
         },
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 5", "write 1 460", "leave 1"}},
        {"a text field",
         [](PortUnitTest& t) {
             t.begin(5);
             t.set(5, -3);
             t.end(5);
             t.wait(2 * kPause);
         },
         {"touch 5", "write 5 -3", "leave 5"}},
        {"gestures of two controls of one parameter",
         [](PortUnitTest& t) {
             t.begin(6);
             t.begin(6);
             t.set(6, 3);
             t.end(6);
             t.set(6, 4);
             t.end(6);
             t.end(6); // one too many
         },
         {"touch 6", "write 6 3", "write 6 4", "leave 6"}},
        {"a value that is held",
         [](PortUnitTest& t) {
             t.set(1, 440);
             t.set(0, 0.9f); // held as 0
             t.wait(2 * kPause);
         },
         {}},
        {"values that don't fit",
         [](PortUnitTest& t) {
             t.set(1, 1e9f);
             t.set(5, std::nanf(""));
             t.set(9, 1);
             t.wait(2 * kPause);
         },
         {"touch 1", "write 1 24000", "leave 1"}},
        {"an editor that closes within an edit",
         [](PortUnitTest& t) {
             t.set(1, 450);
             t.begin(5);
             t.set(5, -6);
             t.begin(6);
             t.unit.close();
             t.wait(2 * kPause);
         },
         {"touch 1", "write 1 450", "touch 5", "write 5 -6", "leave 1", "leave 5"}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        row.edit(*this);
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
    unit.portChanged(1, 1000);
    unit.portChanged(1, 2000);
    unit.portChanged(0, 2.9f);
    unit.portChanged(5, -12); // held already
    unit.portChanged(6, std::nanf(""));
    unit.portChanged(7, 1);
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
        begin(1);
        for (const float hz : {1000.0f, 2000.0f, 1000.0f, 3000.0f}) set(1, hz);
        end(1);
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
    unit.portChanged(1, 2000);
    unit.portChanged(1, 1000);
    EXPECT_THAT(hears(), ElementsAre("1 1000"));
}

TEST_F(PortUnitTest, TakesEchoesFromWithinTheWrite)
{
    host.echoesAtOnce = &unit;
    begin(1);
    set(1, 1000);
    set(1, 2000);
    end(1);
    EXPECT_THAT(hears(), IsEmpty());
    unit.portChanged(1, 1000); // both echoes came, so this is the host's
    EXPECT_THAT(hears(), ElementsAre("1 1000"));
    host.echoesAtOnce = nullptr;
}

TEST_F(PortUnitTest, TheHostDoesNotFightADrag)
{
    static const struct {
        const char* why;
        void (*drag)(PortUnitTest&);
        std::vector<std::string> heardAfterwards;
        float held;
    } kRows[] = {
        {"a report before a later move",
         [](PortUnitTest& t) {
             t.set(1, 1000);
             t.unit.portChanged(1, 500);
             t.set(1, 2000);
         },
         {},
         2000},
        {"a report before an echo",
         [](PortUnitTest& t) {
             t.set(1, 1000);
             t.unit.portChanged(1, 500);
             t.unit.portChanged(1, 1000);
         },
         {},
         1000},
        {"a report after the last move",
         [](PortUnitTest& t) {
             t.set(1, 1000);
             t.unit.portChanged(1, 500);
         },
         {"1 500"},
         500},
        {"a report before the first move", [](PortUnitTest& t) { t.unit.portChanged(1, 600); }, {"1 600"}, 600},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        begin(1);
        row.drag(*this);
        EXPECT_THAT(hears(), IsEmpty());
        end(1);
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
