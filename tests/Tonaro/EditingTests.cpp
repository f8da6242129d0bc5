// Undo, redo, and the setting on the clipboard.

#include "EditorRig.h"

#include "AppKit/NSPasteboard.h"
#include "TonaroSettingText.h"
#include "TonaroToneView.h"

#include <cmath>

namespace {

constexpr std::uint32_t kCtrl = NSControlKeyMask | NSCommandKeyMask;

class EditingTest : public EditorTest {
protected:
    bool key(unichar character, std::uint32_t flags = 0)
    {
        const bool wanted = editor->key(character, flags);
        scene.run();
        return wanted;
    }
    bool undo() { return key(u'z', kCtrl); }
    bool redo() { return key(u'Z', kCtrl | NSShiftKeyMask); }
    /// @return what reached the unit
    std::string paste(const char* text)
    {
        NSPasteboard::setString(NSString::string(text).get());
        key(u'v', kCtrl);
        return unit.takeLog();
    }
    void enter(const char* field, float value)
    {
        editor->enter(field, value);
        scene.run();
    }
    float start() const { return unit.values[kParamStartFrequency]; }
};

TEST_F(EditingTest, GesturesAreTakenBackAndMadeAgain)
{
    const auto& slider = editor->pressStart();
    for (const double hz : {600.0, 800.0, 1000.0}) {
        editor->mouse(NSLeftMouseDragged, slider, MelFromHz(hz));
        scene.run(0.1);
    }
    editor->mouse(NSLeftMouseUp, slider, MelFromHz(1000));
    scene.run();
    const float dragged = start();
    enter("mStartFrequencyText", 2000);
    enter("mGainText", -30);
    unit.takeLog();

    EXPECT_TRUE(undo());
    EXPECT_EQ(unit.takeLog(), "begin(5) set(5,-12) end(5)");
    EXPECT_EQ(editor->text("mGainText"), "-12.0") << "the editor follows";
    EXPECT_TRUE(undo());
    EXPECT_EQ(start(), dragged);
    EXPECT_TRUE(undo());
    EXPECT_EQ(start(), 440) << "the drag is one step";
    EXPECT_FALSE(undo()) << "the host may have something to undo";
    EXPECT_TRUE(redo());
    EXPECT_EQ(start(), dragged);
    EXPECT_TRUE(redo());
    EXPECT_TRUE(key(u'y', kCtrl));
    EXPECT_EQ(unit.values[kParamGain], -30);
    EXPECT_FALSE(redo());
    EXPECT_TRUE(undo());
    enter("mGainText", -40);
    EXPECT_FALSE(redo()) << "a new edit is the end of what was undone";
}

TEST_F(EditingTest, KeysInARowAreOneEdit)
{
    editor->window->makeFirstResponder(&editor->start());
    for (int i = 0; i < 5; ++i) key(NSUpArrowFunctionKey);
    EXPECT_NEAR(start(), 490, 0.01);
    scene.run(1);
    key(NSPageUpFunctionKey);
    EXPECT_TRUE(undo());
    EXPECT_NEAR(start(), 490, 0.01);
    EXPECT_TRUE(undo());
    EXPECT_NEAR(start(), 440, 0.01);
    EXPECT_FALSE(undo());
}

TEST_F(EditingTest, KeysThatLeadBackAreNoEdit)
{
    enter("mStartFrequencyText", 600);
    editor->window->makeFirstResponder(&editor->start());
    key(NSUpArrowFunctionKey);
    key(NSDownArrowFunctionKey);
    EXPECT_NEAR(start(), 600, 0.01);
    EXPECT_TRUE(undo());
    EXPECT_NEAR(start(), 440, 0.01) << "each undo can be seen";
}

TEST_F(EditingTest, AutomationIsNoEdit)
{
    for (const float hz : {500.0F, 600.0F, 30000.0F}) automate(kParamStartFrequency, hz);
    EXPECT_FALSE(undo());
}

TEST_F(EditingTest, TypingIsUndoneInItsFieldFirst)
{
    auto& field = editor->outlet<NSTextField>("mGainText");
    enter("mStartFrequencyText", 1000);
    field.selectText(nullptr);
    key(u'-');
    key(u'7');
    EXPECT_TRUE(undo());
    EXPECT_EQ(start(), 1000);
    key(NSEscapeCharacter);
    while (start() == 1000 && undo()) {
    }
    EXPECT_EQ(start(), 440) << "then the edit before";
}

TEST_F(EditingTest, ThePicturesDragsCount)
{
    const auto& picture = editor->only<TonaroToneView>();
    const NSPoint end = picture.endPoint();
    editor->mouse(NSLeftMouseDown, picture, end);
    EXPECT_FALSE(undo()) << "not in the middle of an edit";
    editor->mouse(NSLeftMouseDragged, picture, {end.x, end.y + 10});
    editor->mouse(NSLeftMouseUp, picture, {end.x, end.y + 10});
    scene.run();
    EXPECT_NE(unit.values[kParamEndFrequency], 8000);
    EXPECT_TRUE(undo());
    EXPECT_EQ(unit.values[kParamEndFrequency], 8000);
}

TEST_F(EditingTest, TheSettingTravelsByTheClipboard)
{
    key(u'c', kCtrl);
    std::string copied;
    NSPasteboard::readString([&copied](const NSString* text) { copied = text->utf8(); });
    EXPECT_EQ(copied, "waveform=Sine\nstart-frequency=440\nuse-end=1\nend-frequency=8000\nlog-sweep=0\ngain=-12\n"
                      "length=2.5\n");
    EXPECT_EQ(paste("--set waveform=square; gain = -20.5, start-frequency=440"),
              "begin(0) set(0,2) end(0) begin(5) set(5,-20.5) end(5)")
        << "what is new is set";
    EXPECT_EQ(editor->text("mGainText"), "-20.5");
    EXPECT_TRUE(undo());
    EXPECT_EQ(unit.values[kParamGain], -12);
    EXPECT_EQ(unit.values[kParamWaveform], 0) << "together";
}

TEST_F(EditingTest, AClipboardWithoutASettingChangesNothing)
{
    for (const char* text :
         {"", "hello", "gain=-20; volume=3", "gain=loud", "gain=nan", "gain=1e99", "gain", "=", "\n;"}) {
        EXPECT_EQ(paste(text), "") << text;
    }
    EXPECT_EQ(paste("gain=-20\ngain=-30"), "begin(5) set(5,-30) end(5)")
        << "of a name that comes twice the last counts";
    EXPECT_TRUE(undo());
    EXPECT_EQ(unit.values[kParamGain], -12);
}

TEST_F(EditingTest, ARefusedPasteIsToldForAWhile)
{
    const auto plain = editor->pixels();
    paste("loud");
    EXPECT_NE(editor->pixels(), plain);
    scene.run(5);
    EXPECT_EQ(editor->pixels(), plain);

    key(u'v', kCtrl);
    const NSSize size = editor->view->frame().size;
    editor->end();
    const auto nothing = make<NSView>(NSRect{{0, 0}, size});
    editor->window->setContentView(nothing);
    const auto empty = editor->pixels();
    EXPECT_TRUE(std::equal(empty.begin() + 4, empty.end(), empty.begin())) << "the note goes with the editor";
}

TEST_F(EditingTest, AnEditorMayCloseWhileItPastes)
{
    unit.whenSet = [this] { editor->end(); };
    EXPECT_EQ(paste("gain=-20\nlength=3"), "begin(5) set(5,-20) end(5) begin(6) set(6,3) end(6)") << "not by half";
}

TEST_F(EditingTest, ToolTipsTellTheNoteAndWhatWasClamped)
{
    auto& field = editor->outlet<NSTextField>("mStartFrequencyText");
    EXPECT_EQ(field.toolTip()->utf8(), "A4");
    const auto type = [&](const char* text, float held) {
        unit.whenSet = [this, held] { unit.values[kParamStartFrequency] = held; };
        field.selectText(nullptr);
        for (const char* c = text; *c; ++c) key(static_cast<unichar>(*c));
        key(NSCarriageReturnCharacter);
    };
    type("30k", 22050);
    EXPECT_EQ(field.toolTip()->utf8(), "F10 −23 ct\n30000 is out of range; the nearest possible is 22050.");
    type("1k", 1000);
    EXPECT_EQ(field.toolTip()->utf8(), "B5 +21 ct");
    type("440.0001", 440.001F);
    EXPECT_EQ(field.toolTip()->utf8(), "A4") << "the editor's own rounding is no limit";
    EXPECT_EQ(editor->outlet<NSTextField>("mGainText").toolTip(), nullptr);
    EXPECT_EQ(editor->text("mStartFreqRangeText"), "(.01 to 22050 Hz)");
}

TEST(TonaroSettingText, ReadsWhatItWrites)
{
    const std::array<float, kParamCount> values{3, 0.01F, 0, 123.456F, 1, -120, 86399.99F};
    std::string problem;
    const TonaroSetting setting = TonaroSettingFromText(TonaroSettingText(values), problem);
    ASSERT_EQ(setting.size(), values.size()) << problem;
    for (const auto& [parameter, value] : setting) EXPECT_EQ(value, values[parameter]);
    EXPECT_TRUE(TonaroSettingFromText("gain=-1\nlength=x", problem).empty());
    EXPECT_EQ(problem, "length=x");
    TonaroSettingFromText("aääääääääääääääääääääääääää", problem);
    EXPECT_EQ(problem, "aäääääääääääääääääää…") << "no half characters";
}

} // namespace
