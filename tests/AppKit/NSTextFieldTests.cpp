#include "AppKit/NSPasteboard.h"
#include "AppKit/NSTextField.h"
#include "Script.h"

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
    .action("fieldChanged:", &Target::fieldChanged)
NS_CLASS_TABLE_END

/// Two fields, the first with a formatter, in a window. An Escape that goes on is noted as "on".
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
        const auto press = [this](const TypedKey& key) {
            const bool wanted = rig.window()->sendEvent(*EventOf(key, rig.window()));
            if (!wanted && key.key == NSEscapeCharacter) log += "on ";
        };
        script.otherwise = TypingInto(press, true);
        script.verbs = {
            {"focus", [this](const Step&) { focus(); }},
            {"leave", [this](const Step&) { rig.window()->makeFirstResponder(nullptr); }},
            {"elsewhere", [this](const Step&) { rig.click(other); }},
            {"background",
             [this](const Step&) {
                 rig.press(rig.content(), {5, 190});
             }},
            {"set", [this](const Step& step) { set(static_cast<int>(step.number())); }},
            {"plain", [this](const Step&) { field->setFormatter(nullptr); }},
            {"silent", [this](const Step&) { field->cell()->setSendsActionOnEndEditing(false); }},
            {"limited", [this](const Step&) { target->then = [](NSTextField& sent) { sent.setIntValue(20000); }; }},
            {"why",
             [this](const Step&) { log += field->refusalText() ? field->refusalText()->utf8() + " " : "none "; }},
        };
    }
    void keys(std::string_view steps) { script.play(steps); }
    void set(int value)
    {
        field->setIntValue(value);
        EXPECT_EQ(field->stringValue()->utf8(), std::to_string(value) + " Hz");
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
    /// Does the steps in an edit. @return what was noted, what is shown and the value: "sent(880 Hz) [880|] =880"
    std::string play(std::string_view steps)
    {
        focus();
        keys(steps);
        return takeLog() + shown() + " =" + std::to_string(field->intValue());
    }
    Script script;
};

TEST(NSTextField, Edits)
{
    ExpectLogs<Fields>({
        {"Return commits and selects all", "880 Ret", "read(880) sent(880 Hz) [880|] =880"},
        {"and Enter", "880 Enter", "read(880) sent(880 Hz) [880|] =880"},
        {"a second Return has nothing to commit", "880 Ret Ret", "read(880) sent(880 Hz) [880|] =880"},
        {"Tab commits and leaves", "880 Tab", "read(880) sent(880 Hz) 880 Hz =880"},
        {"Shift-Tab too", "880 S-Tab", "read(880) sent(880 Hz) 880 Hz =880"},
        {"a press on another field", "880 elsewhere", "read(880) sent(880 Hz) 880 Hz =880"},
        {"a press on the background", "880 background", "read(880) sent(880 Hz) 880 Hz =880"},
        {"nothing typed", "Ret Tab", "440 Hz =440"},
        {"typed and undone", "5 C-z Tab", "440 Hz =440"},
        {"only moved", "Left S-Right Tab", "440 Hz =440"},
        {"an emptied field means no value", "Back Tab", "read() 440 Hz =440"},
        {"the same text typed anew counts", "440 Tab", "read(440) sent(440 Hz) 440 Hz =440"},
        {"leaving stores without the action where the cell says so", "silent 5 Tab", "read(5) 5 Hz =5"},
        {"but Return sends it", "silent 6 Ret", "read(6) sent(6 Hz) [6|] =6"},

        {"Escape restores", "5 Esc", "[440|] =440"},
        {"and leaves nothing to commit", "5 Esc Tab", "440 Hz =440"},
        {"it goes on where nothing was typed", "Esc 5 Esc Esc", "on on [440|] =440"},
        {"and takes away what was said", "- why Esc why", "Only digits. none [440|] =440"},

        {"refused text stays", "5x Ret", "read(5x) 5x| =440"},
        {"and keeps the focus", "5x Tab", "read(5x) 5x| =440"},
        {"from a press, too", "5x elsewhere why", "read(5x) “5x” is no frequency. 5x| =440"},
        {"until it is put right", "5x Tab Back why Tab", "read(5x) none read(5) sent(5 Hz) 5 Hz =5"},
        {"or given up", "5x Tab Esc Tab", "read(5x) 440 Hz =440"},
        {"a change refused while typing isn't made", "5 - 6 Ret", "read(56) sent(56 Hz) [56|] =56"},
        {"what the formatter wrote never refuses itself", "leave set:-5 focus End s Back Tab", "read(minus) -5 Hz =-5"},

        {"a value set while nothing is typed is shown at once, all selected", "set:1000", "[1000|] =1000"},
        {"a caret that was placed stays", "Home Right set:1000", "1|000 =1000"},
        {"one behind the new text moves to its end", "End set:7", "7| =7"},
        {"once typed, it isn't shown yet", "5 set:1000", "5| =1000"},
        {"Escape shows it", "5 set:1000 Esc", "[1000|] =1000"},
        {"a commit wins", "5 set:1000 Ret", "read(5) sent(5 Hz) [5|] =5"},
        {"leaving without typing shows it", "set:1000 Tab", "1000 Hz =1000"},
        {"a refused edit stays", "5x Ret set:1000", "read(5x) 5x| =1000"},
        {"an echo of the value leaves the caret alone", "Home set:440", "|440 =440"},
        {"and the undo", "Home 1 set:440 C-z", "|440 =440"},
        {"the field shows what its action makes of the value", "limited 99999 Ret",
         "read(99999) sent(99999 Hz) [20000|] =20000"},
        {"also when it is left", "limited 99999 Tab", "read(99999) sent(99999 Hz) 20000 Hz =20000"},
        {"a formatter picked while typing drops what was typed", "5x plain", "[440|] =440"},
        {"and leaves nothing to commit", "5x plain Tab", "440 =440"},
    });
}

TEST(NSTextField, APressBehindTheTextPutsTheCaretToItsEnd)
{
    Fields f;
    f.rig.click(f.field);
    EXPECT_EQ(f.shown(), "440|");
    EXPECT_EQ(f.rig.window()->firstResponder(), f.field->currentEditor());
    f.rig.click(f.other, 2);
    EXPECT_NE(f.other->currentEditor(), nullptr) << "the window's editor serves the next field";
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
