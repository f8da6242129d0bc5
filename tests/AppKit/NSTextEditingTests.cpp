#include "TypedKeys.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using enum NSTextEditing::Direction;
using enum NSTextEditing::Unit;
using enum NSTextEditing::Selecting;

/// Carets between code points, words at blanks: enough where no font is at hand.
NSTextEditing::Breaks SimpleBreaks(std::u16string_view text)
{
    NSTextEditing::Breaks breaks{{0}, {}};
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((text[i] & 0xFC00) != 0xD800) breaks.carets.push_back(i + 1);
        if (text[i] == u' ') continue;
        if (breaks.words.empty() || breaks.words.back().end != i) breaks.words.push_back({i, i});
        breaks.words.back().end = i + 1;
    }
    if (breaks.carets.back() != text.size()) breaks.carets.push_back(text.size());
    return breaks;
}

std::string Shown(const NSTextEditing& editing) { return Shown(editing.text(), editing.selection(), editing.caret()); }

TEST(NSTextEditing, PressesAndDragsSelectByTheirUnit)
{
    static const struct {
        const char* why;
        NSTextEditing::Unit unit;
        std::size_t press, drag;
        const char* shown;
    } kRows[] = {
        {"a drag to the right", character, 1, 5, "o[ne t|]wo  six"},
        {"a drag to the left", character, 5, 1, "o[|ne t]wo  six"},
        {"a drag back to its start", character, 2, 2, "on|e two  six"},
        {"a word", word, 5, 5, "one [two|]  six"},
        {"the gap between words", word, 8, 8, "one two[  |]six"},
        {"words to the right", word, 1, 10, "[one two  six|]"},
        {"words to the left keep the first", word, 10, 5, "one [|two  six]"},
        {"the last word, from behind it", word, 12, 12, "one two  [six|]"},
        {"everything stays everything", all, 5, 0, "[one two  six|]"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        NSTextEditing editing(SimpleBreaks);
        editing.start(u"one two  six");
        editing.press(row.press, row.unit, no);
        editing.drag(row.drag);
        EXPECT_EQ(Shown(editing), row.shown);
    }
}

TEST(NSTextEditing, TheJudgeRefusesAndReplaces)
{
    NSTextEditing editing(SimpleBreaks);
    editing.setJudge([](const std::u16string& proposed) -> std::optional<std::u16string> {
        if (proposed.find(u'x') != proposed.npos) return std::nullopt;
        std::u16string upper = proposed;
        for (auto& unit : upper)
            if (unit == u'a') unit = u'A';
        return upper;
    });
    editing.start(u"12");
    EXPECT_FALSE(editing.insert(u"x"));
    EXPECT_FALSE(editing.isEdited());
    editing.move(backward, character, no);
    EXPECT_TRUE(editing.insert(u"a"));
    EXPECT_EQ(Shown(editing), "1A|2");
    EXPECT_TRUE(editing.undo());
    EXPECT_EQ(Shown(editing), "1|2");
}

TEST(NSTextEditing, AJudgeThatEndsTheEditChangesNothingMore)
{
    NSTextEditing editing(SimpleBreaks);
    editing.setJudge([&editing](const std::u16string& proposed) -> std::optional<std::u16string> {
        editing.start(u"new");
        return proposed;
    });
    editing.start(u"old");
    EXPECT_FALSE(editing.insert(u"er"));
    EXPECT_EQ(Shown(editing), "new|");
    EXPECT_FALSE(editing.isEdited());
}

TEST(NSTextEditing, LongTextIsCutAtACharacter)
{
    std::u16string pairs;
    while (pairs.size() < 100000) pairs += u"\U0001D11E";
    NSTextEditing editing(SimpleBreaks);
    editing.start(u"a");
    EXPECT_TRUE(editing.insert(pairs, NSTextEditing::Source::clipboard));
    EXPECT_EQ(editing.text().size(), NSTextEditing::kMaxLength - 1); // no room for one more pair
    EXPECT_TRUE(editing.insert(u"b"));
    EXPECT_FALSE(editing.insert(u"c"));
    editing.selectAll();
    EXPECT_TRUE(editing.insert(u"c"));
    EXPECT_EQ(Shown(editing), "c|");
}

TEST(NSTextEditing, UndoAndRedoWalkTheSameTexts)
{
    std::mt19937 random(20110411);
    NSTextEditing editing(SimpleBreaks);
    editing.start(u"one two \U0001D11E 3");
    const std::u16string first = editing.text();
    for (int step = 0; step < 3000; ++step) {
        const auto direction = random() % 2 ? forward : backward;
        const auto unit = random() % 3 ? character : random() % 2 ? word : all;
        switch (random() % 6) {
        case 0:
            editing.move(direction, unit, random() % 2 ? extend : no);
            break;
        case 1:
            editing.erase(direction, unit == all ? character : unit);
            break;
        case 2:
            editing.undo();
            break;
        case 3:
            editing.redo();
            break;
        default:
            editing.insert(random() % 2 ? u"\U0001D11E" : u"a b");
            break;
        }
        const auto span = editing.selection();
        ASSERT_LE(span.end, editing.text().size());
        ASSERT_TRUE(span.end == editing.text().size() || (editing.text()[span.end] & 0xFC00) != 0xDC00);
        if (step % 150 != 149) continue;
        const std::u16string last = editing.text();
        int undone = 0;
        while (editing.undo()) ++undone;
        ASSERT_EQ(editing.text(), first);
        ASSERT_FALSE(editing.isEdited());
        for (; undone > 0; --undone) editing.redo();
        ASSERT_EQ(editing.text(), last);
        editing.start(first);
    }
}

TEST(NSTextEditing, MoreChangesThanAreKeptStillCountAsAnEdit)
{
    NSTextEditing editing(SimpleBreaks);
    editing.start(u"");
    for (int i = 0; i < 400; ++i) editing.insert(u"ab", NSTextEditing::Source::clipboard);
    int undone = 0;
    while (editing.undo()) ++undone;
    EXPECT_GT(undone, 100);
    EXPECT_EQ(editing.text().size(), 800U - 2U * static_cast<unsigned>(undone));
    EXPECT_TRUE(editing.isEdited());
}

TEST(NSPastableText, HasNoControlCharacters)
{
    static const struct {
        const char* why;
        std::u16string_view text, result;
    } kRows[] = {
        {"plain", u"440", u"440"},
        {"a copied line", u"440\r\n", u"440\n"},
        {"line ends stay", u"\n12\r\n34\r56\n\n78\n", u"\n12\n34\n56\n\n78\n"},
        {"rarer ones, too", u"1\v2\f3\u00854", u"1\n2\n3\n4"},
        {"tabs and control characters", u"1\t2\u00013\u0084", u"1\t23"},
        {"half a pair", u"1\xD834 2\xDD1E", u"1 2"},
        {"a pair", u"\U0001D11E", u"\U0001D11E"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(NSPastableText(row.text), row.result);
    }
}

} // namespace
