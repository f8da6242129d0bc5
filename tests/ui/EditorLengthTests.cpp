// The length in a real window: the menu of its formats, opened in four ways, what is read there and what typing sends.
#include "ui/EditorRig.h"

namespace {

constexpr XClient::KeySymbol kMenu = 0xFF67, kF10 = 0xFFC7;
constexpr XClient::KeySymbol kControlOnly[] = {kControl}, kShiftOnly[] = {kShift};
constexpr std::size_t kFormats = 11;

class EditorLength : public EditorTest {
protected:
    EditorLength() { controls = Controls({"--set=sample-rate=48000"}); }

    void clickForMenu(XClient::Button button)
    {
        person.moveTo(at("mLengthText"));
        if (button == XClient::left) person.pressKey(kControl);
        person.click(person.pointer(), button);
        if (button == XClient::left) person.releaseKey(kControl);
    }
    bool showsText(const std::string& text)
    {
        return person.waitUntil([&] {
            person.key('a', kControlOnly);
            person.key('c', kControlOnly);
            return Program({"xclip", "-selection", "clipboard", "-o"}, {server.setting()}).allOutput() == text;
        });
    }
};

TEST_F(EditorLength, EachFormatShowsTheLengthAndReadsWhatIsTyped)
{
    start({"--set=sample-rate=48000"});
    const struct {
        const char* why;
        std::function<void()> openMenu;
        std::size_t item;
        const char* shown;
        const char* typed;
        double seconds; ///< as typed
    } kRows[] = {
        {"samples, by a right click", [&] { clickForMenu(XClient::right); }, 0, "120,000", "96000", 2},
        {"25 fps, by Control and a click", [&] { clickForMenu(XClient::left); }, 6, "00:00:02:00", "1:05", 1.2},
        {"seconds, by the menu key", [&] { person.key(kMenu); }, 2, "1.200000", "1.5", 1.5},
        {"drop-frame, by Shift and F10", [&] { person.key(kF10, kShiftOnly); }, 8, "00:00:01;15", "10:00", 10.01},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        row.openMenu();
        glideToItem(person.waitForMenu(), row.item, kFormats);
        person.click(person.pointer());
        ASSERT_TRUE(person.waitUntil([&] { return person.menus().empty(); })); // it would swallow the next press
        EXPECT_TRUE(traceUntilQuiet().isEmpty()) << "a format sends nothing";
        person.click(at("mLengthText"));
        EXPECT_TRUE(showsText(row.shown));
        typeInto("mLengthText", row.typed);
        person.key(kReturn);
        const Trace trace = silentTrace();
        EXPECT_EQ(trace.shape(), "begin 6, set 6, end 6");
        EXPECT_NEAR(trace.last(6), row.seconds, 1e-4);
    }
}

} // namespace
