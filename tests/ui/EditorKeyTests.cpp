// What a person does to the editor with the keyboard, and what the generator hears of it.
#include "ui/EditorRig.h"

namespace {

using testing::MatchesRegex;
using testing::StartsWith;
using Keys = std::vector<XClient::KeySymbol>;

const Keys kControlOnly = {kControl};

class EditorKeys : public EditorTest {
protected:
    std::vector<std::uint32_t> pixelsOf(const std::string& outlet)
    {
        CGRect frame = controls[outlet].frame;
        frame.origin = {frame.origin.x + 10, frame.origin.y + 10};
        return person.pixels(CGRectInset(frame, -4, -4));
    }
};

TEST_F(EditorKeys, TypedFrequencies)
{
    start();
    static const struct {
        const char* why;
        const char* typed;
        const char* set;
        double held;
    } kRows[] = {
        {"rounded up to a thousandth", "1000.0004", "set 1 1000.001", 1000.001},
        {"above the range", "30000", "set 1 30000", 22050},
        {"inside again", "440", "set 1 440", 440},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        typeInto("mStartFrequencyText", row.typed);
        person.key(kReturn);
        const Trace trace = silentTrace();
        ASSERT_THAT(trace.shape(), StartsWith("begin 1, set 1, end 1"));
        EXPECT_EQ(trace.lines()[1].text, row.set);
        EXPECT_THAT(trace.shape(), MatchesRegex("begin 1, set 1, end 1(, set 1)?"));
        if (trace.values(1).size() > 1) {
            EXPECT_NEAR(trace.last(1), row.held, row.held * 1e-6);
        }
    }
}

TEST_F(EditorKeys, StepTheSliderThatTabReached)
{
    start();
    tabTo("mStartFrequencySlider");
    const struct {
        const char* why;
        Keys modifiers;
        XClient::KeySymbol key;
        double hz;
    } kRows[] = {
        {"Page Up: 100 from 100 Hz on", {}, kPageUp, 540},
        {"Up: a tenth of it", {}, kUp, 550},
        {"Control and Up: the maximum", kControlOnly, kUp, 22050},
        {"Page Down: 1000 from 1000 Hz on", {}, kPageDown, 21050},
        {"End: the minimum", {}, kEnd, 0.01},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        person.key(row.key, row.modifiers);
        const Trace trace = silentTrace();
        EXPECT_EQ(trace.shape(), "set 1") << "keys make no gesture";
        EXPECT_NEAR(trace.last(1), row.hz, std::max(row.hz * 1e-5, 1e-4));
    }
}

TEST_F(EditorKeys, ChooseAWaveform)
{
    start();
    tabTo("mWaveformPopup");
    person.key(' ');
    ASSERT_NE(person.waitForMenu(), xcb_window_t{XCB_NONE});
    person.key(kDown);
    person.key(kDown);
    person.key(kReturn);
    const Trace trace = silentTrace();
    EXPECT_EQ(trace.shape(), "begin 0, set 0, end 0");
    EXPECT_EQ(trace.last(0), 2.0);

    person.key(' ');
    ASSERT_NE(person.waitForMenu(), xcb_window_t{XCB_NONE});
    person.key(kEscape);
    EXPECT_TRUE(person.waitUntil([&] { return person.menus().empty(); }));
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
}

TEST_F(EditorKeys, TabWalksTheControlsAndSkipsDisabledOnes)
{
    start();
    tabTo("mStartFrequencyText");
    person.type("880"); // over the old text, which Tab selects
    person.key(kTab);   // commits
    EXPECT_EQ(traceUntil("set 1").last(1), 880.0);
    traceUntilQuiet();
    person.key(' '); // the switch
    EXPECT_EQ(silentTrace().last(2), 1.0);
    person.key(' ');
    EXPECT_EQ(silentTrace().last(2), 0.0);
    person.key(kTab); // past the end controls, which are disabled
    person.key(kPageUp);
    EXPECT_NEAR(silentTrace().last(5), -6.0, 1e-4);
    person.key(kTab, Keys{kShift});
    person.key(' ');
    EXPECT_EQ(silentTrace().last(2), 1.0);
}

TEST_F(EditorKeys, EscapeRestoresTheField)
{
    start();
    typeInto("mStartFrequencyText", "999");
    person.key(kEscape);
    person.key(kReturn);
    EXPECT_TRUE(traceUntilQuiet().isEmpty()) << "nothing typed is left to commit";
    person.key(kEnd);
    person.type("5");
    person.key(kReturn);
    EXPECT_EQ(traceUntil("set 1").last(1), 4405.0);
}

TEST_F(EditorKeys, AnAccentedLetterIsRefusedWhereEverybodySeesIt)
{
    start();
    typeInto("mStartFrequencyText", "");
    const auto before = pixelsOf("mStartFrequencyText");
    person.key(kDeadAcute);
    person.key('e');
    person.key(kReturn);
    EXPECT_TRUE(person.waitUntil([&] { return pixelsOf("mStartFrequencyText") != before; }));
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
    person.key(kEscape);
    typeInto("mStartFrequencyText", "500");
    person.key(kReturn);
    EXPECT_EQ(traceUntil("set 1").last(1), 500.0);
}

TEST_F(EditorKeys, CopyAndPaste)
{
    start();
    Program owner({"xclip", "-selection", "clipboard", "-quiet", "-i"}, {server.setting()});
    owner.writeInput("1234.5");
    ASSERT_TRUE(person.waitUntil([&] { return person.ownerOf("CLIPBOARD") != XCB_NONE; }));
    typeInto("mStartFrequencyText", "");
    person.key('v', kControlOnly);
    // the text comes from another program, some time; until then there is nothing to commit
    std::optional<Program::Line> line;
    EXPECT_TRUE(person.waitUntil([&] {
        person.key(kReturn);
        return (line = editor->nextLine(0.05)).has_value();
    }));
    EXPECT_EQ(traceUntil("set 1").last(1), 1234.5);
    traceUntilQuiet();

    typeInto("mStartFrequencyText", "");
    person.key('c', kControlOnly);
    EXPECT_TRUE(person.waitUntil([&] {
        return Program({"xclip", "-selection", "clipboard", "-o"}, {server.setting()}).allOutput() == "1234.5";
    }));
}

} // namespace
