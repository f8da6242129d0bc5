#pragma once

/// One line of text being edited: its units, the selection, undo. Knows no window, no font and no key.
///
/// Indices count UTF-16 units. Anchor and caret only ever stand where the finder of breaks allows it, so never inside
/// a surrogate pair or between a letter and its accents. A change that the judge refuses leaves everything as it was.
///
/// "440" with all of it selected: `insert(u"1")`, `insert(u"2")` gives "12"; one `undo()` gives "440", all selected
/// again.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class NSTextEditing {
public:
    /// The longest text that typing and pasting can make; what is longer is cut at a character.
    static constexpr std::size_t kMaxLength = 4096;

    struct Span {
        std::size_t start = 0, end = 0;
        bool empty() const { return start == end; }
    };
    struct Breaks {
        std::vector<std::size_t> carets; ///< where a caret may stand, ascending; first 0, last the text's length
        std::vector<Span> words;         ///< ascending
    };
    using BreakFinder = std::function<Breaks(std::u16string_view text)>;
    /// Asked before each change with the text that would come of it. @return the text to put there: usually the same,
    /// none to refuse
    using Judge = std::function<std::optional<std::u16string>(const std::u16string& proposed)>;

    enum class Direction { backward, forward };
    enum class Unit { character, word, all };
    enum class Selecting { no, extend };
    enum class Source { keyboard, clipboard }; ///< what is typed in a row is undone together

    explicit NSTextEditing(BreakFinder findBreaks);
    void setJudge(Judge judge);

    /// A new edit of `text`: the caret at its end, nothing to undo.
    void start(std::u16string text);
    /// Other text in place of this one, with nothing typed yet: the selection stays where it was, or stays everything.
    void restart(std::u16string text);
    const std::u16string& text() const { return mText; }
    /// Whether the person changed something since the start that was not undone.
    bool isEdited() const { return mForgotChanges || !mDone.empty(); }

    std::size_t caret() const { return mCaret; }
    Span selection() const;
    std::u16string selectedText() const;
    void selectAll();

    void move(Direction direction, Unit unit, Selecting selecting);
    /// A press at `index`: places the caret there, or selects the word or the whole text there.
    void press(std::size_t index, Unit unit, Selecting selecting);
    Unit pressUnit() const { return mPressUnit; }
    /// The pointer was dragged on to `index`: the selection grows by the unit of the press.
    void drag(std::size_t index);

    // Changes. @return false when nothing changed

    /// Replaces the selection.
    bool insert(std::u16string_view text, Source source = Source::keyboard);
    /// Deletes the selection; without one, the unit on that side of the caret.
    bool erase(Direction direction, Unit unit);
    bool undo();
    bool redo();

private:
    struct Change {
        Span where; ///< in the text before the change
        std::u16string removed, inserted;
        std::size_t anchorBefore, caretBefore;
        enum Kind { typed, erased, single } kind;
    };

    const Breaks& breaks() const;
    std::size_t neighbour(Direction direction, Unit unit) const;
    std::size_t snapped(std::size_t index) const;
    Span wordAt(std::size_t index) const;
    void select(std::size_t anchor, std::size_t caret);
    bool apply(Span where, std::u16string_view text, Change::Kind kind);
    Change differenceTo(std::u16string_view text) const;
    void remember(Change change);
    bool joinLast(const Change& change);
    void replace(Span where, std::u16string_view text);

    BreakFinder mFindBreaks;
    Judge mJudge;
    std::u16string mText;
    mutable Breaks mBreaks;
    mutable bool mBreaksKnown = false;
    std::size_t mAnchor = 0, mCaret = 0;
    Unit mPressUnit = Unit::character;
    Span mPressed; ///< what the press selected; dragging never shrinks the selection below it
    std::vector<Change> mDone, mUndone;
    bool mGroupOpen = false;
    bool mForgotChanges = false; ///< there were too many to keep
    std::uint64_t mEditNumber = 0;
};

/// What of a key's characters goes into a text: empty when there is a control character or a function key among them.
std::u16string_view NSTypableText(std::u16string_view characters);

/// Text from the clipboard as a judge sees it: control characters and unpaired surrogates vanish, tabs and line ends
/// stay; "12\r\n34\n" gives "12\n34\n".
std::u16string NSPastableText(std::u16string_view text);
