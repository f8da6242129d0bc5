// What a person does to the editor with the pointer, and what the generator hears of it.
#include "ui/EditorRig.h"

#include <poll.h>

namespace {

using testing::MatchesRegex;

// The slider answers the last event, so a set may follow the gesture.
constexpr char kOneDrag[] = "begin 1, set 1, end 1(, set 1)?";

double MelFromHz(double hz) { return 2595.0 * std::log10(1.0 + hz / 700.0); }

class EditorMouse : public EditorTest {};

TEST_F(EditorMouse, ADragIsOneGesture)
{
    start();
    drag("mStartFrequencySlider", 0.3, 0.7);
    const Trace trace = silentTrace();
    EXPECT_THAT(trace.shape(), MatchesRegex(kOneDrag));
    EXPECT_GT(trace.count("set 1"), 2U);
    const auto values = trace.values(1);
    EXPECT_LT(values.front(), values.back());
}

TEST_F(EditorMouse, ADragToTheEndsFallsSilent)
{
    start();
    static const struct {
        const char* why;
        double from, to, hz;
    } kRows[] = {{"far to the left", 0.6, -0.4, 0.01}, {"far to the right", 0.3, 1.5, 22050}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        drag("mStartFrequencySlider", row.from, row.to);
        const Trace trace = silentTrace();
        EXPECT_THAT(trace.shape(), MatchesRegex(kOneDrag));
        EXPECT_NEAR(trace.last(1), row.hz, row.hz * 1e-5);
    }
}

TEST_F(EditorMouse, AFastDragFallsSilent)
{
    start();
    person.moveTo(at("mStartFrequencySlider"));
    person.press();
    for (int i = 0; i < 1000; ++i) { // about a thousand moves a second
        person.moveTo(at("mStartFrequencySlider", 0.5 + 0.4 * std::sin(i / 20.0)));
        poll(nullptr, 0, 1);
    }
    person.release();
    EXPECT_THAT(silentTrace().shape(), MatchesRegex(kOneDrag));
}

TEST_F(EditorMouse, ShiftMakesTheDragTenTimesFiner)
{
    start();
    person.moveTo(at("mStartFrequencySlider", 0.4));
    person.press();
    const double first = MelFromHz(traceUntil("set 1").last(1));
    person.glideTo(at("mStartFrequencySlider", 0.6));
    person.release();
    const double second = MelFromHz(silentTrace().last(1));
    person.pressKey(kShift);
    person.press();
    person.glideTo(at("mStartFrequencySlider", 0.8));
    person.release();
    person.releaseKey(kShift);
    const double third = MelFromHz(silentTrace().last(1));
    EXPECT_GT(second, first);
    EXPECT_NEAR((third - second) / (second - first), 0.1, 0.01);
}

TEST_F(EditorMouse, ADoubleClickRestoresTheDefault)
{
    start();
    person.doubleClick(at("mStartFrequencySlider", 0.8));
    const Trace trace = silentTrace();
    EXPECT_EQ(trace.count("begin 1"), 1U) << "only the first click is a gesture";
    EXPECT_EQ(trace.count("end 1"), 1U);
    EXPECT_NEAR(trace.last(1), 440.0, 0.001);
}

TEST_F(EditorMouse, TheWheelMovesASlider)
{
    start();
    person.moveTo(at("mGainSlider"));
    person.turnWheel(XClient::wheelUp, 3);
    const Trace up = silentTrace();
    EXPECT_EQ(up.shape(), "set 5");
    EXPECT_EQ(up.last(5), -9.0);
    person.turnWheel(XClient::wheelDown, 1);
    EXPECT_EQ(silentTrace().last(5), -10.0);
}

TEST_F(EditorMouse, TheSweepSwitchEnablesTheEndControlsAtOnce)
{
    start();
    drag("mEndFrequencySlider", 0.3, 0.6);
    EXPECT_EQ(silentTrace().shape(), "begin 3, end 3") << "a disabled slider tracks nothing";

    person.click(at("mUseEndCheckbox", 0.05));
    Trace trace = silentTrace();
    EXPECT_EQ(trace.shape(), "begin 2, set 2, end 2");
    EXPECT_EQ(trace.last(2), 1.0);
    drag("mEndFrequencySlider", 0.3, 0.6);
    EXPECT_THAT(silentTrace().shape(), MatchesRegex("begin 3, set 3, end 3(, set 3)?"));
    person.click(at("mLogSweepCheckbox", 0.05));
    EXPECT_EQ(silentTrace().shape(), "begin 4, set 4, end 4");

    person.click(at("mUseEndCheckbox", 0.05));
    EXPECT_EQ(silentTrace().last(2), 0.0);
    person.click(at("mLogSweepCheckbox", 0.05));
    drag("mEndFrequencySlider", 0.6, 0.3);
    EXPECT_EQ(silentTrace().shape(), "begin 3, end 3");
}

TEST_F(EditorMouse, AWaveformIsChosenWithTheMouse)
{
    start();
    const std::size_t count = controls["mWaveformPopup"].items.size();
    ASSERT_GE(count, 3U);
    person.click(at("mWaveformPopup"));
    glideToItem(person.waitForMenu(), 2, count);
    person.click(person.pointer());
    Trace trace = silentTrace();
    EXPECT_EQ(trace.shape(), "begin 0, set 0, end 0");
    EXPECT_EQ(trace.last(0), 2.0);

    person.moveTo(at("mWaveformPopup")); // and in one go
    person.press();
    glideToItem(person.waitForMenu(), 1, count);
    person.release();
    trace = silentTrace();
    EXPECT_EQ(trace.shape(), "begin 0, set 0, end 0");
    EXPECT_EQ(trace.last(0), 1.0);

    person.click(at("mWaveformPopup"));
    ASSERT_NE(person.waitForMenu(), xcb_window_t{XCB_NONE});
    person.click({1200, 850}); // over no window of the program
    EXPECT_TRUE(person.waitUntil([&] { return person.menus().empty(); }));
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
}

TEST_F(EditorMouse, ClosingTheWindowEndsTheGesture)
{
    start();
    person.moveTo(at("mStartFrequencySlider", 0.3));
    person.press();
    person.glideTo(at("mStartFrequencySlider", 0.6));
    traceUntil("set 1");
    person.askToClose(windows.front());
    const Trace trace = traceUntil("end 1");
    EXPECT_EQ(editor->waitForExit(10), 0);
    EXPECT_EQ(editor->allOutput(), "") << "nothing after the end";
    EXPECT_EQ(trace.count("end 1"), 1U);
}

TEST_F(EditorMouse, ALostServerEndsTheGestureAndTheProgram)
{
    start();
    person.moveTo(at("mStartFrequencySlider", 0.3));
    person.press();
    traceUntil("set 1");
    server.stop();
    traceUntil("end 1");
    EXPECT_EQ(editor->waitForExit(10), 0);
}

TEST_F(EditorMouse, TwoEditorsShowTheSame)
{
    start({"--editors=2"});
    const CGRect first = person.frame(windows[0]), second = person.frame(windows[1]);
    const auto before = person.pixels(second);
    drag("mStartFrequencySlider", 0.3, 0.7);
    EXPECT_THAT(silentTrace().shape(), MatchesRegex(kOneDrag));
    person.click(at("mUseEndCheckbox", 0.05));
    silentTrace();
    EXPECT_NE(person.pixels(second), before);

    person.moveTo({1200, 850}); // no hover, no focus ring
    person.focus(person.screen().root);
    EXPECT_TRUE(person.waitUntil([&] { return person.pixels(first) == person.pixels(second); }));
}

} // namespace
