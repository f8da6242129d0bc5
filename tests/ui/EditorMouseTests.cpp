// What a person does to the editor with the pointer, and what the generator hears of it.
#include "ui/EditorRig.h"

#include <poll.h>

namespace {

using testing::MatchesRegex;

// The slider answers the last event, so a set may follow the gesture.
constexpr char kOneDrag[] = "begin 1, set 1, end 1(, set 1)?";

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

TEST_F(EditorMouse, TheEndOfTheWindowOrTheServerEndsTheGestureAndTheProgram)
{
    for (const bool isServersEnd : {false, true}) {
        SCOPED_TRACE(isServersEnd);
        start();
        person.moveTo(at("mStartFrequencySlider", 0.3));
        person.press();
        person.glideTo(at("mStartFrequencySlider", 0.6));
        traceUntil("set 1");
        isServersEnd ? server.stop() : person.askToClose(windows.front());
        EXPECT_EQ(traceUntil("end 1").count("end 1"), 1U);
        EXPECT_EQ(editor->waitForExit(10), 0);
        EXPECT_EQ(editor->allOutput(), "") << "nothing after the end";
        if (!isServersEnd) person.release();
    }
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
