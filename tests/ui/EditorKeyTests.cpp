// What a person does to the editor with the keyboard, and what the generator hears of it.
#include "ui/EditorRig.h"

namespace {

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

TEST_F(EditorKeys, StepTheSliderThatTabReached)
{
    start();
    tabTo("mStartFrequencySlider");
    const auto press = [&](XClient::KeySymbol key, const Keys& modifiers) {
        person.key(key, modifiers);
        const Trace trace = silentTrace();
        EXPECT_EQ(trace.shape(), "set 1") << "keys make no gesture";
        return trace.last(1);
    };
    EXPECT_NEAR(press(kPageUp, {}), 540, 1e-2);
    EXPECT_NEAR(press(kUp, {}), 550, 1e-2);
    EXPECT_NEAR(press(kUp, kControlOnly), 22050, 0.1);
    EXPECT_NEAR(press(kEnd, {}), 0.01, 1e-4);
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
