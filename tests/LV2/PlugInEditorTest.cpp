// The built editor in a small host, under a real pointer.

#include "LV2/EditorLayout.h"
#include "LV2/PlugInHost.h"
#include "ui/Xvfb.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <optional>

#include <lv2/patch/patch.h>
#include <malloc.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kLeft = 20, kTop = 30; // where the host's window is
constexpr XClient::KeySymbol kUp = 0xFF52;

class PlugInEditorTest : public testing::Test {
protected:
    PlugInEditorTest() : person(server.display())
    {
        setenv("DISPLAY", server.display().c_str(), 1);
        parent = person.makeWindow(kLeft, kTop, 800, 600);
    }

    HostedEditor::Options embedded() const { return {.parent = parent}; }
    CGPoint at(const std::string& outlet, double part = 0.5) const
    {
        const CGPoint point = placeInEditor(outlet, part);
        return {point.x + kLeft, point.y + kTop};
    }
    double knobAt(const std::string& outlet) { return knobOnScreen(person, {kLeft, kTop}, outlet); }
    void idleFor(HostedEditor& editor, double seconds)
    {
        person.waitUntil([&] { return editor.idle(), false; }, seconds);
    }
    bool idleUntil(HostedEditor& editor, const std::function<bool()>& isTrue)
    {
        return person.waitUntil([&] { return editor.idle(), isTrue(); });
    }
    /// With the host's idle calls between the moves.
    void drag(HostedEditor& editor, const std::string& outlet, double from, double to)
    {
        person.moveTo(at(outlet, from));
        person.press();
        for (int i = 1; i <= 10; ++i) {
            person.moveTo(at(outlet, from + (to - from) * i / 10.0));
            idleFor(editor, 0.02);
        }
        person.release();
        idleFor(editor, 0.2);
    }

    Xvfb server;
    XClient person;
    Names names;
    xcb_window_t parent;
};

/// "touch 1, write 1, leave 1": without values; writes of one port in a row count once.
std::string Shape(const std::vector<std::string>& log)
{
    std::string shape, before;
    for (const std::string& line : log) {
        const std::string what = line.substr(0, line.find(' ', line.find(' ') + 1));
        if (what == before && what.starts_with("write")) continue;
        shape += (shape.empty() ? "" : ", ") + what;
        before = what;
    }
    return shape;
}

TEST_F(PlugInEditorTest, ADragReachesEveryKindOfHost)
{
    static const struct {
        const char* why;
        HostedEditor::Options options;
        const char* shape;
    } kRows[] = {
        {"a host that hears touches", {}, "touch 1, write 1, leave 1"},
        {"one that reports every write", {.echoes = true}, "touch 1, write 1, leave 1"},
        {"one without touches", {.touches = false}, "write 1"},
        {"one that maps no names", {.maps = false}, "touch 1, write 1, leave 1"},
        {"one with a null controller", {.hasController = false}, "touch 1, write 1, leave 1"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        HostedEditor::Options options = row.options;
        options.parent = parent;
        HostedEditor editor(names, options);
        idleFor(editor, 0.1);
        EXPECT_THAT(editor.taken(), IsEmpty());
        drag(editor, "mStartFrequencySlider", 0.3, 0.7);
        const auto log = editor.taken();
        EXPECT_EQ(Shape(log), row.shape);
        EXPECT_GT(log.size(), 8U); // every move
        EXPECT_NEAR(knobAt("mStartFrequencySlider"), 0.7, 0.05);
        idleFor(editor, 0.5);
        EXPECT_THAT(editor.taken(), IsEmpty());
        EXPECT_NEAR(knobAt("mStartFrequencySlider"), 0.7, 0.05);
    }
}

TEST_F(PlugInEditorTest, OpeningAndAutomationWriteNothing)
{
    HostedEditor editor(names, embedded());
    static constexpr float kOpened[] = {2, 1000, 1, 20, 1, -120, 0.5f};
    for (std::uint32_t port = 0; port < kParamCount; ++port) editor.portEvent(port, kOpened[port]);
    for (int i = 0; i < 60; ++i) {
        const float part = static_cast<float>(i) / 60.0f;
        editor.portEvent(1, std::exp2(part * 11.0f) * 10.0f);
        editor.portEvent(3, 24000.0f * part + 0.01f);
        editor.portEvent(5, -120.0f * part);
        editor.portEvent(6, 1.0f + part);
        idleFor(editor, 0.02);
    }
    editor.portEvent(1, 5000.0f);
    EXPECT_TRUE(idleUntil(editor, [&] { return std::abs(knobAt("mStartFrequencySlider") - partOfHz(5000)) < 0.05; }))
        << knobAt("mStartFrequencySlider");
    idleFor(editor, 0.6);
    EXPECT_THAT(editor.taken(), IsEmpty());
}

TEST_F(PlugInEditorTest, TheHostWaitsUntilADragIsOver)
{
    HostedEditor editor(names, embedded());
    idleFor(editor, 0.1);
    person.moveTo(at("mStartFrequencySlider", 0.3));
    person.press();
    person.moveTo(at("mStartFrequencySlider", 0.6));
    idleFor(editor, 0.1);
    for (int i = 0; i < 10; ++i) {
        editor.portEvent(1, 100.0f + static_cast<float>(i));
        idleFor(editor, 0.02);
    }
    EXPECT_NEAR(knobAt("mStartFrequencySlider"), 0.6, 0.05);
    person.release();
    EXPECT_TRUE(idleUntil(editor, [&] { return knobAt("mStartFrequencySlider") < 0.2; }));
    EXPECT_EQ(Shape(editor.taken()), "touch 1, write 1, leave 1");
}

TEST_F(PlugInEditorTest, KeysShareATouchThatEndsWithTheEditor)
{
    std::optional<HostedEditor> editor(std::in_place, names, embedded());
    idleFor(*editor, 0.1);
    person.click(at("mStartFrequencySlider", 0.5));
    idleFor(*editor, 0.2);
    editor->taken();
    for (int i = 0; i < 3; ++i) {
        person.key(kUp);
        idleFor(*editor, 0.1);
    }
    EXPECT_EQ(Shape(editor->log()), "touch 1, write 1");
    idleFor(*editor, 0.6);
    EXPECT_EQ(Shape(editor->taken()), "touch 1, write 1, leave 1");
    person.turnWheel(XClient::wheelUp, 2);
    idleFor(*editor, 0.1);
    person.doubleClick(at("mGainSlider", 0.2));
    idleFor(*editor, 0.1);
    EXPECT_EQ(Shape(editor->taken()), "touch 1, write 1, touch 5, write 5, leave 5, touch 5, write 5");
}

TEST_F(PlugInEditorTest, UndoIsAnEditOfItsOwn)
{
    HostedEditor editor(names, embedded());
    editor.portEvent(1, 1000.0f);
    idleFor(editor, 0.2);
    drag(editor, "mGainSlider", 0.2, 0.6);
    editor.portEvent(1, 5000.0f); // the host's, and none of the editor's to take back
    idleFor(editor, 0.2);
    editor.taken();
    static constexpr XClient::KeySymbol kControlOnly[] = {0xFFE3};
    for (int i = 0; i < 3; ++i) {
        person.key('z', kControlOnly);
        idleFor(editor, 0.2);
    }
    idleFor(editor, 0.5);
    EXPECT_THAT(editor.taken(), ElementsAre("touch 5", "write 5 -12", "leave 5"));
}

TEST_F(PlugInEditorTest, TheScaleIsTheHosts)
{
    HostedEditor::Options options = embedded();
    options.scale = 1.5;
    const HostedEditor large(names, options);
    options.scale = 1.0;
    const HostedEditor plain(names, options);
    const auto frame = person.frame(large.window());
    EXPECT_EQ(large.size().first, plain.size().first * 3 / 2);
    EXPECT_EQ(frame.size.width, large.size().first);
    EXPECT_EQ(frame.size.height, large.size().second);
    EXPECT_EQ(frame.origin.x, kLeft);
}

TEST_F(PlugInEditorTest, StandsAloneWhereTheHostCantEmbed)
{
    HostedEditor editor(names, {});
    EXPECT_THAT(person.windowsNamed("Tonaro"), IsEmpty());
    for (int i = 0; i < 2; ++i) {
        editor.show();
        EXPECT_TRUE(idleUntil(editor, [&] { return person.windowsNamed("Tonaro").size() == 1; }));
        editor.hide();
        EXPECT_TRUE(idleUntil(editor, [&] { return person.windowsNamed("Tonaro").empty(); }));
    }
    editor.show();
    ASSERT_TRUE(idleUntil(editor, [&] { return person.windowsNamed("Tonaro").size() == 1; }));
    person.askToClose(person.windowsNamed("Tonaro").front());
    EXPECT_TRUE(person.waitUntil([&] { return !editor.idle(); }));
    editor.show(); // a host may want it again
    EXPECT_TRUE(idleUntil(editor, [&] { return person.windowsNamed("Tonaro").size() == 1; }));
    EXPECT_TRUE(editor.idle());
}

TEST_F(PlugInEditorTest, HelpOpensOnceAndGoesWithTheLastEditor)
{
    std::optional<HostedEditor> editor(std::in_place, names, embedded()), below(std::in_place, names, embedded());
    idleFor(*editor, 0.1);
    for (int i = 0; i < 2; ++i) {
        person.click(at("onHelp:"));
        EXPECT_TRUE(idleUntil(*editor, [&] { return person.windowsNamed("Tonaro Help").size() == 1; }));
        idleFor(*editor, 0.2);
    }
    editor.reset();
    idleFor(*below, 0.1);
    EXPECT_EQ(person.windowsNamed("Tonaro Help").size(), 1U);
    below.reset();
    EXPECT_TRUE(person.waitUntil([&] { return person.windowsNamed("Tonaro Help").empty(); }));
}

TEST_F(PlugInEditorTest, ManyCloseInAnyOrder)
{
    std::vector<std::unique_ptr<HostedEditor>> editors;
    for (int i = 0; i < 4; ++i) editors.push_back(std::make_unique<HostedEditor>(names, embedded()));
    for (const std::size_t closed : {3U, 0U, 1U}) { // the one below the others stays
        editors[closed].reset();
        for (const auto& editor : editors)
            if (editor) idleFor(*editor, 0.02);
    }
    drag(*editors[2], "mGainSlider", 0.2, 0.6);
    EXPECT_EQ(Shape(editors[2]->taken()), "touch 5, write 5, leave 5");
}

TEST_F(PlugInEditorTest, SurvivesAParentThatGoesFirst)
{
    HostedEditor editor(names, embedded());
    idleFor(editor, 0.1);
    xcb_destroy_window(person.get(), parent);
    person.synchronize();
    EXPECT_TRUE(person.waitUntil([&] { return !editor.idle(); }));
    editor.portEvent(1, 1000.0f);
    editor.idle();
}

TEST_F(PlugInEditorTest, FiftyOpeningsLeaveNothingBehind)
{
    const auto openAndClose = [&] {
        HostedEditor editor(names, embedded());
        editor.portEvent(1, 1000.0f);
        idleFor(editor, 0.02);
        person.click(at("mStartFrequencySlider"));
        idleFor(editor, 0.02);
    };
    const auto descriptors = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    for (int i = 0; i < 5; ++i) openAndClose();
    const auto openBefore = descriptors();
    const auto bytesBefore = mallinfo2().uordblks;
    for (int i = 0; i < 50; ++i) openAndClose();
    EXPECT_EQ(descriptors(), openBefore);
    EXPECT_LT(mallinfo2().uordblks, bytesBefore + 50 * 1024) << "from " << bytesBefore; // a kilobyte each
    const HostedEditor another(names, embedded());
    EXPECT_EQ(another.size().first, editorWidth());
}

TEST_F(PlugInEditorTest, TheTimeFormatBelongsToTheState)
{
    HostedTone tone(names);
    tone.restore({{names(kTonaroTimeFormatURI), 0}}); // samples
    tone.run();
    tone.takenMessages(); // nobody heard it: an editor that doesn't ask shows time, and picking that changes nothing
    HostedEditor::Options options = embedded();
    options.tone = &tone;
    HostedEditor editor(names, options);
    idleFor(editor, 0.3);
    // the format menu of the length field: its second item is time
    person.click(at("mLengthText"), XClient::right);
    xcb_window_t menu = XCB_NONE;
    ASSERT_TRUE(idleUntil(editor, [&] { return !person.menus().empty() && person.isKeyboardGrabbed(); }));
    menu = person.menus().front();
    const CGRect frame = person.frame(menu);
    person.click({CGRectGetMidX(frame), frame.origin.y + 1.5 * frame.size.height / 11.0});
    EXPECT_TRUE(idleUntil(editor, [&] { return tone.saved().at(names(kTonaroTimeFormatURI)) != 0; }));
    EXPECT_EQ(tone.saved().at(names(kTonaroTimeFormatURI)), 1);
}

} // namespace
