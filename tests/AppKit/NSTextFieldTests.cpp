#include "AppKit/NSPasteboard.h"
#include "AppKit/NSTextField.h"
#include "Support/OffscreenRig.h"
#include "TypedKeys.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace {

/// Whole numbers, written with " Hz" behind, which it doesn't read; typing no letters but "x". Empty text is no value.
class HzFormatter final : public NSFormatter {
public:
    std::string* log = nullptr;

    RetainPtr<NSString> stringForObjectValue(const NSObject* object) const override
    {
        const auto* number = asKind<NSNumber>(object);
        return number ? NSString::stringWithFormat("%d Hz", number->intValue()) : nullptr;
    }
    RetainPtr<NSString> editingStringForObjectValue(const NSObject* object) const override
    {
        const auto* number = asKind<NSNumber>(object);
        if (!number) return nullptr;
        return number->intValue() < 0 ? "minus"_ns : NSString::stringWithFormat("%d", number->intValue());
    }
    bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text, RetainPtr<NSString>* error) const override
    {
        *log += "read(" + text->utf8() + ") ";
        const bool digits = text->units().find_first_not_of(u"0123456789") == std::u16string::npos;
        if (digits && text->length() > 0) *object = NSNumber::numberWithInt(text->intValue());
        if (!digits) *error = NSString::string("“" + text->utf8() + "” is no frequency.");
        return digits;
    }
    bool isPartialStringValid(const NSString* partial, RetainPtr<NSString>*, RetainPtr<NSString>* error) const override
    {
        const bool valid = partial->units().find_first_not_of(u"0123456789xminus") == std::u16string::npos;
        if (!valid) *error = "Only digits."_ns;
        return valid;
    }
};

class Target final : public NSObject {
public:
    NS_CLASS(Target)
    std::string* log = nullptr;
    std::function<void(NSTextField&)> then = [](NSTextField&) {};

    void fieldChanged(NSObject* sender)
    {
        auto& field = dynamic_cast<NSTextField&>(*sender);
        *log += "sent(" + field.stringValue()->utf8() + ") ";
        then(field);
    }
};
NS_CLASS_TABLE(Target, NSObject, "")
    .action("fieldChanged:", &Target::fieldChanged) NS_CLASS_TABLE_END

    /// Two fields, the first with a formatter, in a window.
    struct Fields {
    std::string log; // of formatter and target together
    OffscreenRig rig{{300, 200}};
    RetainPtr<Target> target = make<Target>();
    RetainPtr<HzFormatter> formatter = make<HzFormatter>();
    RetainPtr<NSTextField> owner = make<NSTextField>(NSRect{{20, 20}, {120, 26}});
    NSTextField* field = rig.add(owner);
    NSTextField* other = rig.add(make<NSTextField>(NSRect{{20, 60}, {120, 26}}));

    Fields()
    {
        formatter->log = target->log = &log;
        field->setFormatter(formatter);
        field->setIntValue(440);
        field->setTarget(target);
        field->setAction("fieldChanged:");
    }
    void keys(std::string_view script)
    {
        for (const TypedKey& key : KeysOf(script)) rig.window()->sendEvent(*EventOf(key, rig.window()));
    }
    void focus() { ASSERT_TRUE(rig.window()->makeFirstResponder(field)); }
    /// What stands in the field while it is edited; its value's text else.
    std::string shown() const
    {
        const NSTextView* editor = field->currentEditor();
        if (!editor) return field->stringValue()->utf8();
        return Shown(editor->text(), editor->selection(), editor->caret());
    }
    std::string takeLog() { return std::exchange(log, {}); }
};

TEST(NSTextField, Commits)
{
    static const struct {
        const char* why;
        const char* keys;
        const char* log;
        const char* shown;
    } kRows[] = {
        {"Return commits and selects all", "880 Ret", "read(880) sent(880 Hz) ", "[880|]"},
        {"and Enter", "880 Enter", "read(880) sent(880 Hz) ", "[880|]"},
        {"a second Return has nothing to commit", "880 Ret Ret", "read(880) sent(880 Hz) ", "[880|]"},
        {"Tab commits and leaves", "880 Tab", "read(880) sent(880 Hz) ", "880 Hz"},
        {"Shift-Tab too", "880 S-Tab", "read(880) sent(880 Hz) ", "880 Hz"},
        {"nothing typed", "Ret Tab", "", "440 Hz"},
        {"typed and undone", "5 C-z Tab", "", "440 Hz"},
        {"only moved", "Left S-Right Tab", "", "440 Hz"},
        {"Escape restores", "5 Esc", "", "[440|]"},
        {"and leaves nothing to commit", "5 Esc Tab", "", "440 Hz"},
        {"refused text stays", "5x Ret", "read(5x) ", "5x|"},
        {"and keeps the focus", "5x Tab", "read(5x) ", "5x|"},
        {"until it is put right", "5x Tab Back Tab", "read(5x) read(5) sent(5 Hz) ", "5 Hz"},
        {"or given up", "5x Tab Esc Tab", "read(5x) ", "440 Hz"},
        {"a change refused while typing isn't made", "5 - 6 Ret", "read(56) sent(56 Hz) ", "[56|]"},
        {"an emptied field means no value", "Back Tab", "read() ", "440 Hz"},
        {"the same text typed anew counts", "440 Tab", "read(440) sent(440 Hz) ", "440 Hz"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Fields f;
        f.focus();
        f.keys(row.keys);
        EXPECT_EQ(f.takeLog(), row.log);
        EXPECT_EQ(f.shown(), row.shown);
    }
}

TEST(NSTextField, TextThatTheFormatterWroteNeverRefusesItself)
{
    Fields f;
    f.field->setIntValue(-5);
    f.focus();
    EXPECT_EQ(f.shown(), "[minus|]");
    f.keys("End s Back Tab");
    EXPECT_EQ(f.takeLog(), "read(minus) ");
    EXPECT_EQ(f.field->currentEditor(), nullptr);
    EXPECT_EQ(f.field->intValue(), -5);
}

TEST(NSTextField, LeavingStoresWithoutTheActionWhereTheCellSaysSo)
{
    Fields f;
    f.field->cell()->setSendsActionOnEndEditing(false);
    f.focus();
    f.keys("5 Tab");
    EXPECT_EQ(f.takeLog(), "read(5) ");
    EXPECT_EQ(f.field->intValue(), 5);
    f.focus();
    f.keys("6 Ret");
    EXPECT_EQ(f.takeLog(), "read(6) sent(6 Hz) ");
}

TEST(NSTextField, APressElsewhereCommitsOrIsRefused)
{
    Fields f;
    f.rig.click(f.field);
    EXPECT_EQ(f.shown(), "440|") << "a press behind the text puts the caret to its end";
    f.keys("x");
    f.rig.click(f.other);
    EXPECT_EQ(f.takeLog(), "read(440x) ");
    ASSERT_NE(f.field->currentEditor(), nullptr);
    EXPECT_EQ(f.rig.window()->firstResponder(), f.field->currentEditor());
    ASSERT_NE(f.field->refusalText(), nullptr);
    EXPECT_EQ(f.field->refusalText()->utf8(), "“440x” is no frequency.");
    f.keys("Back");
    EXPECT_EQ(f.field->refusalText(), nullptr);
    f.rig.press(f.rig.content(), {5, 190});
    EXPECT_EQ(f.takeLog(), "read(440) sent(440 Hz) ");
    EXPECT_EQ(f.field->currentEditor(), nullptr);
    f.rig.click(f.other, 2);
    EXPECT_NE(f.other->currentEditor(), nullptr) << "the window's editor serves the next field";
}

TEST(NSTextField, EscapeGoesOnWhereNothingWasTyped)
{
    Fields f;
    f.focus();
    EXPECT_FALSE(f.rig.key(NSEscapeCharacter));
    f.keys("5");
    EXPECT_TRUE(f.rig.key(NSEscapeCharacter));
    EXPECT_FALSE(f.rig.key(NSEscapeCharacter));
    f.keys("-"); // refused at once: Escape takes the note away
    ASSERT_NE(f.field->refusalText(), nullptr);
    EXPECT_EQ(f.field->refusalText()->utf8(), "Only digits.");
    EXPECT_TRUE(f.rig.key(NSEscapeCharacter));
    EXPECT_EQ(f.field->refusalText(), nullptr);
    EXPECT_EQ(f.takeLog(), "");
}

TEST(NSTextField, AValueSetDuringAnEdit)
{
    static const struct {
        const char* why;
        const char* before;
        const char* after;
        const char* shown;
        int value;
    } kRows[] = {
        {"nothing typed: shown at once, all selected", "", "", "[1000|]", 1000},
        {"caret placed: it stays", "Home Right", "", "1|000", 1000},
        {"typed: not shown yet", "5", "", "5|", 1000},
        {"Escape shows it", "5", "Esc", "[1000|]", 1000},
        {"a commit wins", "5", "Ret", "[5|]", 5},
        {"leaving without typing shows it", "", "Tab", "1000 Hz", 1000},
        {"a refused edit stays", "5x Ret", "", "5x|", 1000},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Fields f;
        f.focus();
        f.keys(row.before);
        f.field->setIntValue(1000);
        EXPECT_EQ(f.field->stringValue()->utf8(), "1000 Hz");
        f.keys(row.after);
        EXPECT_EQ(f.shown(), row.shown);
        EXPECT_EQ(f.field->intValue(), row.value);
    }
}

TEST(NSTextField, AnEchoOfTheValueLeavesCaretAndUndoAlone)
{
    Fields f;
    f.focus();
    f.keys("Home");
    f.field->setIntValue(440);
    EXPECT_EQ(f.shown(), "|440");
    f.keys("1");
    f.field->setIntValue(440);
    f.keys("C-z");
    EXPECT_EQ(f.shown(), "|440");
}

TEST(NSTextField, TheFieldShowsWhatItsActionMakesOfTheValue)
{
    Fields f;
    f.target->then = [](NSTextField& field) { field.setIntValue(20000); };
    f.focus();
    f.keys("99999 Ret");
    EXPECT_EQ(f.shown(), "[20000|]");
    f.keys("99999 Tab");
    EXPECT_EQ(f.shown(), "20000 Hz");
    EXPECT_EQ(f.takeLog(), "read(99999) sent(99999 Hz) read(99999) sent(99999 Hz) ");
}

TEST(NSTextField, AnEditIsGivenUpWhenTheFieldGoesAway)
{
    static const struct {
        const char* why;
        std::function<void(Fields&)> happens;
    } kRows[] = {
        {"disabled", [](Fields& f) { f.field->setEnabled(false); }},
        {"hidden", [](Fields& f) { f.field->setHidden(true); }},
        {"hidden with its superview", [](Fields& f) { f.rig.content()->setHidden(true); }},
        {"removed", [](Fields& f) { f.field->removeFromSuperview(); }},
        {"no longer editable",
         [](Fields& f) {
             f.field->setEditable(false);
             f.field->setSelectable(false);
         }},
        {"window closed", [](Fields& f) { f.rig.window()->close(); }},
        {"another content", [](Fields& f) { f.rig.window()->setContentView(make<NSView>(NSRect{}).get()); }},
    };
    for (const auto& row : kRows) {
        for (const char* keys : {"5", "5x", "5x Ret"}) {
            SCOPED_TRACE(std::string(row.why) + " after " + keys);
            Fields f;
            f.focus();
            f.keys(keys);
            f.takeLog();
            row.happens(f);
            EXPECT_EQ(f.takeLog(), "");
            EXPECT_EQ(f.field->currentEditor(), nullptr);
            EXPECT_EQ(f.field->refusalText(), nullptr);
            EXPECT_EQ(f.shown(), "440 Hz");
            EXPECT_EQ(f.rig.window()->firstResponder(), f.rig.window());
            f.keys("7 Ret");
            f.rig.turn();
        }
    }
}

TEST(NSTextField, ACellTakenAwayDuringAnEditTakesTheValueAlong)
{
    for (const char* keys : {"Ret", "Tab", "Esc"}) {
        SCOPED_TRACE(keys);
        Fields f;
        f.focus();
        f.keys("5");
        f.field->setCell(nullptr);
        f.keys(keys);
        EXPECT_EQ(f.takeLog(), "");
        EXPECT_EQ(f.field->objectValue(), nullptr);
    }
}

TEST(NSTextField, AnActionMayDoAnything)
{
    static const struct {
        const char* why;
        std::function<void(Fields&)> happens;
    } kRows[] = {
        {"remove the field", [](Fields& f) { f.field->removeFromSuperview(); }},
        {"disable it", [](Fields& f) { f.field->setEnabled(false); }},
        {"close the window", [](Fields& f) { f.rig.window()->close(); }},
        {"move the focus", [](Fields& f) { f.rig.window()->makeFirstResponder(f.other); }},
        {"take the focus back", [](Fields& f) { f.field->selectText(nullptr); }},
        {"begin anew",
         [](Fields& f) {
             f.rig.window()->makeFirstResponder(nullptr);
             f.field->selectText(nullptr);
         }},
        {"throw", [](Fields&) { throw std::runtime_error("no"); }},
    };
    for (const auto& row : kRows) {
        for (const char* keys : {"5 Ret", "5 Tab"}) {
            SCOPED_TRACE(std::string(row.why) + " after " + keys);
            Fields f;
            f.target->then = [&](NSTextField&) { row.happens(f); };
            f.focus();
            try {
                f.keys(keys);
            } catch (const std::runtime_error&) {
            }
            EXPECT_EQ(f.takeLog(), "read(5) sent(5 Hz) ");
            EXPECT_EQ(f.field->intValue(), 5);
            // whoever has the focus now, the field agrees with it
            const bool focused = f.field->currentEditor() != nullptr;
            EXPECT_EQ(focused, f.rig.window()->firstResponder() == f.field->currentEditor());
            EXPECT_EQ(f.shown(), focused ? "[5|]" : "5 Hz");
            f.target->then = [](NSTextField&) {};
            f.keys("6 Tab");
            EXPECT_EQ(f.takeLog(), focused ? "read(6) sent(6 Hz) " : "");
        }
    }
}

TEST(NSTextField, ADyingFieldLetsGoOfTheEditor)
{
    Fields f;
    f.focus();
    f.keys("5");
    f.field->removeFromSuperview();
    f.owner.reset();
    f.other->selectText(nullptr);
    f.keys("7");
    ASSERT_NE(f.other->currentEditor(), nullptr);
    EXPECT_EQ(f.other->currentEditor()->text(), u"7");
}

TEST(NSTextField, AFormatterPickedWhileTypingDropsWhatWasTyped)
{
    Fields f;
    f.focus();
    f.keys("5x");
    f.field->setFormatter(nullptr);
    EXPECT_EQ(f.shown(), "[440|]");
    f.keys("Tab");
    EXPECT_EQ(f.takeLog(), "");
}

TEST(NSTextField, PastedLineEnds)
{
    Fields f;
    NSPasteboard::setString("12\n34\n"_ns.get());
    f.focus();
    f.keys("C-v");
    ASSERT_NE(f.field->refusalText(), nullptr) << "the formatter takes no line end";
    EXPECT_EQ(f.shown(), "[440|]");
    f.field->setFormatter(nullptr);
    for (const auto& [pasted, shown] : {std::pair("12\n34\n", "12 34|"), {"\t5\t6\n", "5 6|"}, {"\n", "|"}}) {
        NSPasteboard::setString(NSString::string(pasted).get());
        f.keys("C-a C-v");
        EXPECT_EQ(f.shown(), shown);
    }
}

TEST(NSTextField, LabelsTakeNoFocus)
{
    Fields f;
    f.other->setEditable(false);
    EXPECT_EQ(f.rig.window()->keyViews(), std::vector<NSView*>{f.field});
    f.focus();
    f.keys("5");
    f.rig.click(f.other);
    EXPECT_EQ(f.takeLog(), "read(5) sent(5 Hz) ") << "a press on a label is a press elsewhere";
    EXPECT_EQ(f.rig.window()->firstResponder(), f.rig.window());
}

TEST(NSTextField, SelectableTextIsCopiedButNotChanged)
{
    Fields f;
    f.other->setEditable(false);
    f.other->setSelectable(true);
    f.other->setStringValue("read me"_ns.get());
    f.rig.click(f.other, 2);
    f.keys("C-c x Back");
    ASSERT_NE(f.other->currentEditor(), nullptr);
    EXPECT_EQ(f.other->currentEditor()->text(), u"read me");
    std::string copied;
    NSPasteboard::readString([&](const NSString* text) { copied = text->utf8(); });
    EXPECT_EQ(copied, "me");
}

TEST(NSTextField, TheNoteStaysInTheWindow)
{
    static const struct {
        const char* why;
        NSRect anchor;
        bool below;
    } kRows[] = {
        {"below", {{20, 20}, {120, 26}}, true},
        {"above at the bottom", {{20, 170}, {120, 26}}, false},
        {"at the right edge", {{260, 20}, {38, 26}}, true},
        {"at the left edge", {{-30, 20}, {38, 26}}, true},
    };
    const NSRect room = {{0, 0}, {300, 200}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto text = "A long sentence that says at length why this is no frequency that could be played."_ns;
        const auto note = make<NSTextBubble>(&NSTextBubble::initWithText, text.get(), row.anchor, room);
        const NSRect frame = note->frame();
        EXPECT_EQ(CGRectIntersection(frame, room), frame);
        EXPECT_EQ(frame.origin.y > row.anchor.origin.y, row.below);
        EXPECT_TRUE(CGRectIsEmpty(CGRectIntersection(frame, row.anchor)));
    }
}

TEST(NSTextField, TheNoteNeedsNoSpacesToBreak)
{
    const auto sizeOf = [](const NSString* text) {
        const NSRect room = {{0, 0}, {400, 200}};
        return make<NSTextBubble>(&NSTextBubble::initWithText, text, NSRect{{20, 20}, {9, 9}}, room)->frame().size;
    };
    const NSSize line = sizeOf("「30」"_ns.get()), two = sizeOf("「30」\n周波数"_ns.get());
    const auto sentence = "「WWWWWWWWWWWWWWWWWWWWWW」は周波数ではありません。ウィンドウもファイルもありません。"_ns;
    EXPECT_GE(sizeOf(sentence.get()).height, two.height);
    EXPECT_GT(two.height, line.height);
    const auto quote = "「WWWWWWWWWWWWWWWWWWWWWW」"_ns;
    EXPECT_GE(sizeOf(sentence.get()).width, sizeOf(quote.get()).width) << "the quote is on one line";
}

} // namespace
