// The length in a real window: the menu of its formats, what is read there and what typing sends.
#include "ui/EditorRig.h"

namespace {

using Keys = std::vector<XClient::KeySymbol>;

const Keys kControlOnly = {kControl};
const Keys kShiftOnly = {kShift};
constexpr XClient::KeySymbol kMenu = 0xFF67, kF10 = 0xFFC7;
constexpr std::size_t kFormats = 11;

/// 2.5 s at 48000 samples a second, then a length that is typed, in the order of the menu.
constexpr struct {
    const char* title;
    const char* shown;
    const char* typed;
    double seconds;
} kRows[kFormats] = {
    {"Samples", "120,000", "96000", 2},
    {"Time", "00:00:02.500", "3.25", 3.25},
    {"Seconds", "2.500000", "1.5", 1.5},
    {"Time and frames", "00:00:02.24000", "1.12000", 1.25},
    {"Frames", "120,000.000", "72000", 1.5},
    {"24 fps", "00:00:02:12", "4:12", 4.5},
    {"25 fps", "00:00:02:13", "1:05", 1.2},
    {"29.97 fps", "00:00:02:15", "10:00", 10.01},
    {"29.97 fps, drop", "00:00:02;15", "1:00:02", 60.06},
    {"30 fps", "00:00:02:15", "1:0:0:0", 3600},
    {"CD", "00:00:02:37", "0:15", 0.2},
};

class EditorLength : public EditorTest {
protected:
    EditorLength() { controls = Controls({"--set=sample-rate=48000"}); }
    void begin() { start({"--set=sample-rate=48000"}); }
    bool showsText(const std::string& text)
    {
        return person.waitUntil([&] {
            person.key('a', kControlOnly);
            person.key('c', kControlOnly);
            return Program({"xclip", "-selection", "clipboard", "-o"}, {server.setting()}).allOutput() == text;
        });
    }
    std::vector<std::uint32_t> pixelsOfField()
    {
        CGRect frame = controls["mLengthText"].frame;
        frame.origin = {frame.origin.x + 10, frame.origin.y + 10};
        return person.pixels(CGRectInset(frame, -4, -4));
    }
};

TEST_F(EditorLength, EachFormatByMouseShowsTheSameLengthAndSendsNothing)
{
    begin();
    for (std::size_t i = 0; i < kFormats; ++i) {
        SCOPED_TRACE(kRows[i].title);
        const bool byControlClick = i % 2 == 1;
        person.moveTo(at("mLengthText"));
        if (byControlClick) person.pressKey(kControl);
        person.click(person.pointer(), byControlClick ? XClient::left : XClient::right);
        if (byControlClick) person.releaseKey(kControl);
        glideToItem(person.waitForMenu(), i, kFormats);
        person.click(person.pointer());
        ASSERT_TRUE(person.waitUntil([&] { return person.menus().empty(); })); // it would swallow the next press
        person.click(at("mLengthText"));
        EXPECT_TRUE(showsText(kRows[i].shown));
    }
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
}

TEST_F(EditorLength, EachFormatByKeyboardReadsWhatIsTyped)
{
    begin();
    tabTo("mLengthText");
    for (std::size_t i = 0; i < kFormats; ++i) {
        SCOPED_TRACE(kRows[i].title);
        i % 2 == 0 ? person.key(kMenu) : person.key(kF10, kShiftOnly);
        ASSERT_NE(person.waitForMenu(), xcb_window_t{XCB_NONE});
        person.key(i == 0 ? kUp : kDown); // from time, the second, to samples, the first; then on
        person.key(kReturn);
        ASSERT_TRUE(person.waitUntil([&] { return person.menus().empty(); }));
        person.key('a', kControlOnly);
        person.type(kRows[i].typed);
        person.key(kReturn);
        const Trace trace = silentTrace();
        EXPECT_EQ(trace.shape(), "begin 6, set 6, end 6");
        EXPECT_NEAR(trace.last(6), kRows[i].seconds, 1e-4);
    }
}

TEST_F(EditorLength, TheListBesideItOffersTheSame)
{
    begin();
    tabTo("mLengthStepper");
    person.key(kTab);
    person.key(' ');
    ASSERT_NE(person.waitForMenu(), xcb_window_t{XCB_NONE});
    person.key(kDown);
    person.key(kReturn);
    ASSERT_TRUE(person.waitUntil([&] { return person.menus().empty(); }));
    person.click(at("mLengthText"));
    EXPECT_TRUE(showsText("2.500000"));
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
}

TEST_F(EditorLength, TheStepperAndTheArrowsStep)
{
    begin();
    const CGPoint stepper = at("mLengthStepper");
    person.click({stepper.x, stepper.y - 6});
    Trace trace = silentTrace();
    EXPECT_EQ(trace.shape(), "begin 6, set 6, end 6");
    EXPECT_EQ(trace.last(6), 3);
    person.click({stepper.x, stepper.y + 6});
    EXPECT_EQ(silentTrace().last(6), 2.5);
    person.click(at("mLengthText"));
    person.key(kUp);
    EXPECT_NEAR(silentTrace().last(6), 2.6, 1e-6) << "a tenth of a second";
    EXPECT_TRUE(showsText("00:00:02.599")) << "the 32-bit float below 2.6 ends just before the last sample";
}

TEST_F(EditorLength, ARefusalShowsAndEscapeRestores)
{
    begin();
    person.click(at("mLengthText"));
    person.key('a', kControlOnly);
    const auto before = pixelsOfField();
    for (const char* const typed : {"1;2", "-1", "2s"}) {
        SCOPED_TRACE(typed);
        person.type(typed);
        person.key(kReturn);
        EXPECT_TRUE(person.waitUntil([&] { return pixelsOfField() != before; }));
        EXPECT_TRUE(traceUntilQuiet().isEmpty());
        EXPECT_TRUE(showsText(typed)) << "stays to be mended";
        person.key(kEscape);
        EXPECT_TRUE(showsText("00:00:02.500"));
    }
    EXPECT_TRUE(traceUntilQuiet().isEmpty());
}

} // namespace
