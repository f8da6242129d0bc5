#include "AppKit/NSAppearance.h"
#include "RecordingDisplay.h"
#include "Script.h"

#include <gtest/gtest.h>

namespace {

/// Writes down what an editor asks; refuses '!' while typing.
struct Client final : NSTextViewClient {
    std::string log;
    std::optional<std::u16string> textWillChange(const std::u16string& proposed) override
    {
        if (proposed.find(u'!') == proposed.npos) return proposed;
        log += "refused ";
        return std::nullopt;
    }
    void textDidChange() override { log += "changed "; }
    bool textCommand(const NSTextCommand& command, NSEvent&) override
    {
        const bool handled = command.action == NSTextAction::accept;
        if (handled) log += "accept ";
        return handled;
    }
    bool textShouldEndEditing() override { return true; }
    void textDidAbort() override { log += "abort "; }
    bool textIsRefused() const override { return false; }
};

/// A text view in the middle of an edit, with the keyboard.
struct Editor {
    explicit Editor(std::u16string text = {}, NSRect frame = {{0, 0}, {60, 26}}, bool editable = true,
                    std::unique_ptr<NSDisplay> display = NSMakeOffscreenDisplay())
        : rig(std::move(display), {300, 100}), owner(make<NSTextView>(NSRect{}))
    {
        start(std::move(text), editable);
        owner->setFrame(frame);
        view = rig.add(owner);
        rig.window()->makeFirstResponder(view);
    }
    void start(std::u16string text, bool editable = true, NSTextAlignment alignment = NSLeftTextAlignment)
    {
        const auto color = NSColor::colorNamed(NSAppearanceColorName::textColor);
        owner->startEditing(&client, {NSSystemFont(), color, alignment, 0}, text, editable);
    }
    void keys(std::string_view script)
    {
        for (const TypedKey& key : KeysOf(script)) view->keyDown(*EventOf(key));
    }
    std::string shown() const { return Shown(view->text(), view->selection(), view->caret()); }

    Client client;
    OffscreenRig rig;
    RetainPtr<NSTextView> owner;
    NSTextView* view = nullptr;
};

TEST(NSTextView, KeysMoveSelectAndChange)
{
    static const struct {
        const char* why;
        const char* text; ///< the caret starts at its end
        const char* keys;
        const char* shown;
    } kRows[] = {
        {"typing", "", "440", "440|"},
        {"one to the left", "440", "Left", "44|0"},
        {"no further than the ends", "44", "Left Left Left Right Right Right", "44|"},
        {"Shift extends", "440", "S-Left S-Left", "4[|40]"},
        {"and shrinks", "440", "S-Left S-Left S-Right", "44[|0]"},
        {"Left leaves a selection at its start", "440", "Left S-Left Left", "4|40"},
        {"Right leaves it at its end", "440", "C-a Right", "440|"},
        {"words", "one two, 3.5", "C-Left C-Left", "one |two, 3.5"},
        {"to the end of the next word", "one two, 3.5", "Home C-Right C-Right", "one two|, 3.5"},
        {"words with Shift", "one two", "S-C-Left", "one [|two]"},
        {"Home and End", "440", "Home S-End", "[440|]"},
        {"Control-Home too", "440", "C-Home", "|440"},
        {"Up and Down go to the ends", "440", "Up S-Down", "[440|]"},
        {"Backspace", "440", "Left Back", "4|0"},
        {"Backspace at the start", "440", "Home Back", "|440"},
        {"Delete", "440", "Home Del", "|40"},
        {"the selection goes first", "440", "S-Left S-Left Del", "4|"},
        {"a word to the left", "one two", "C-Back", "one |"},
        {"a word to the right", "one two", "Home C-Del", "| two"},
        {"typing replaces the selection", "440", "C-a 8000", "8000|"},
        {"a refused change", "440", "! Back", "44|"},
        {"all selected", "440", "C-a", "[440|]"},
        {"Caps Lock types C-A", "440", "C-A", "[440|]"},
        {"undo takes what was typed together", "4", "40 C-z", "4|"},
        {"and the selection comes back", "440", "C-a 80 C-z", "[440|]"},
        {"moving ends a group", "", "44 Left 0 C-z", "4|4"},
        {"deleting is another group", "", "44 Back Back C-z", "44|"},
        {"both ways of deleting", "1234", "Left Left Back Del C-z", "12|34"},
        {"redo", "", "44 Left 0 C-z C-z S-C-z", "44|"},
        {"redo with Y", "", "44 C-z C-y", "44|"},
        {"typing forgets what was undone", "", "44 C-z 5 C-y", "5|"},
        {"undo with nothing to undo", "440", "C-z C-y", "440|"},
        {"cut and paste", "440", "S-Left C-x Home C-v", "0|44"},
        {"the old keys", "440", "C-a C-Ins End S-Ins", "440440|"},
        {"and Shift-Delete", "12", "S-Left S-Del S-Ins S-Ins", "122|"},
        {"cut without a selection", "440", "C-a C-c End C-x C-v", "440440|"},
        {"the third level of a keyboard types", "", "C-A-€ 5", "€5|"},
        {"Alt alone doesn't", "440", "A-f", "440|"},
        {"a function key types nothing", "440", "F5", "440|"},
        {"one press for a pair", "a𝄞b", "Left Left S-Left", "[|a]𝄞b"},
        {"a letter and its accent are one", "ae\u0301b", "Left Left S-Left", "[|a]e\u0301b"},
        {"deleted together", "a𝄞", "Back", "a|"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(std::string(row.why) + ": " + row.keys);
        Editor editor(NSUTF16FromUTF8(row.text));
        editor.keys(row.keys);
        EXPECT_EQ(editor.shown(), row.shown);
    }
}

TEST(NSTextView, KeysOfNobodyGoOn)
{
    static const struct {
        const char* key;
        bool editable, wanted;
    } kRows[] = {
        {"a", true, true},     {"C-z", true, false},   {"Ret", true, true},   {"C-s", true, false},
        {"A-f", true, false},  {"F5", true, false},    {"Esc", true, false},  {"C-Tab", true, true},
        {"a", false, false},   {"Back", false, false}, {"C-v", false, false}, {"C-c", false, true},
        {"Left", false, true}, {"Ret", false, false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(std::string(row.key) + (row.editable ? "" : " in text that can't be changed"));
        const Editor editor(u"440", {}, row.editable);
        NSWindow* const window = editor.rig.window();
        EXPECT_EQ(window->sendEvent(*EventOf(KeysOf(row.key).at(0), window)), row.wanted);
    }
}

/// A clipboard whose owner takes its time.
struct SlowClipboard final : RecordingDisplay {
    using RecordingDisplay::RecordingDisplay;
    std::vector<std::function<void(const NSString*)>> waiting;

    void readClipboardText(std::function<void(const NSString*)> callback) override { waiting.push_back(callback); }
    void answer(const NSString* text)
    {
        for (const auto& callback : std::exchange(waiting, {})) callback(text);
    }
};

TEST(NSTextView, APasteCountsInItsEditOnly)
{
    RecordedWindow record;
    auto display = std::make_unique<SlowClipboard>(record);
    SlowClipboard& clipboard = *display;
    Editor editor(u"4", {}, true, std::move(display));

    editor.keys("C-v 5");
    clipboard.answer("40"_ns.get());
    EXPECT_EQ(editor.shown(), "4540|") << "what was typed meanwhile stays";

    editor.keys("C-v");
    editor.start(u"next");
    clipboard.answer("40"_ns.get());
    EXPECT_EQ(editor.shown(), "next|") << "another edit began";

    editor.keys("C-v");
    clipboard.answer(nullptr);
    EXPECT_EQ(editor.shown(), "next|") << "the clipboard has no text";

    editor.keys("C-v");
    editor.view->removeFromSuperview();
    editor.keys("F5"); // goes up to nobody
    editor.owner.reset();
    clipboard.answer("40"_ns.get());
}

TEST(NSTextView, ThePointerSelects)
{
    Editor editor(u"one two six", {{10, 10}, {200, 26}});
    OffscreenRig& rig = editor.rig;
    NSTextView* const view = editor.view;
    const auto line = CTLineCreate(u"one two six", NSSystemFont());
    const auto before = [&](std::size_t index) {
        return NSPoint{CTLineGetOffsetForStringIndex(line.get(), index), 13};
    };

    rig.press(view, before(4));
    EXPECT_EQ(editor.shown(), "one |two six");
    rig.dragTo(view, {before(6).x, -300});
    EXPECT_EQ(editor.shown(), "one [tw|]o six");
    rig.dragTo(view, {-50, 13});
    rig.release();
    EXPECT_EQ(editor.shown(), "[|one ]two six");
    rig.press(view, before(10), NSShiftKeyMask);
    EXPECT_EQ(editor.shown(), "one [two si|]x") << "Shift keeps the anchor";
    rig.dragTo(view, before(2));
    rig.release();
    EXPECT_EQ(editor.shown(), "on[|e ]two six");
    rig.press(view, {before(7).x - 1, 13}, 0, 2); // the right half of the last letter
    EXPECT_EQ(editor.shown(), "one [two|] six");
    rig.dragTo(view, before(9));
    rig.release();
    EXPECT_EQ(editor.shown(), "one [two six|]");
    rig.press(view, before(1), 0, 3);
    rig.release();
    EXPECT_EQ(editor.shown(), "[one two six|]");
}

TEST(NSTextView, TheCaretRestsAfterTenSeconds)
{
    Editor editor(u"", {{0, 0}, {50, 26}});
    OffscreenRig& rig = editor.rig;
    const auto caretIsSeen = [&] { return rig.pixel(0, 13) != rig.pixel(40, 13); };
    EXPECT_TRUE(caretIsSeen());
    rig.advance(0.6);
    EXPECT_FALSE(caretIsSeen());
    rig.advance(0.5);
    EXPECT_TRUE(caretIsSeen());
    rig.advance(0.5);
    editor.keys("Left");
    EXPECT_TRUE(caretIsSeen()) << "input shows it";
    rig.advance(20);
    EXPECT_TRUE(caretIsSeen());
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1000, false), kCFRunLoopRunFinished) << "nothing is left to do";
    EXPECT_TRUE(caretIsSeen());
}

TEST(NSTextView, LongTextScrollsToItsCaret)
{
    static const struct {
        NSTextAlignment alignment;
        const char* keys;
        bool atLeft;
    } kRows[] = {
        {NSLeftTextAlignment, "", false},
        {NSLeftTextAlignment, "Home", true},
        {NSRightTextAlignment, "Left Right", false},
        {NSRightTextAlignment, "Home", true},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.keys);
        Editor editor;
        editor.start(std::u16string(40, u'8'), true, row.alignment);
        editor.keys(std::string("8 ") + row.keys);
        // where the caret stands, a press leaves it
        const std::string caret = editor.shown();
        editor.rig.press(editor.view, {row.atLeft ? 0.0 : 60.0, 13});
        EXPECT_EQ(editor.shown(), caret);
    }
}

} // namespace
