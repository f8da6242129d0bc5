#include "AppKit/NSTextEditing.h"

#include <algorithm>

namespace {

constexpr std::size_t kMaxChanges = 256;
/// Looked at beyond the room there is, so that the last character that fits is judged with its accents.
constexpr std::size_t kLookAhead = 32;

bool IsControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }
bool IsFunctionKey(char16_t unit) { return unit >= 0xF700 && unit <= 0xF8FF; }
bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
/// Vertical tab, form feed and "next line" included.
bool IsLineEnd(char16_t unit) { return (unit >= u'\n' && unit <= u'\r') || unit == 0x85 || (unit | 1) == 0x2029; }

/// How many units the character at `index` has: 2 for a pair, 0 for half of one.
std::size_t UnitsAt(std::u16string_view text, std::size_t index)
{
    if (IsHighSurrogate(text[index])) return index + 1 < text.size() && IsLowSurrogate(text[index + 1]) ? 2 : 0;
    return IsLowSurrogate(text[index]) ? 0 : 1;
}

} // namespace

NSTextEditing::NSTextEditing(BreakFinder findBreaks) : mFindBreaks(std::move(findBreaks)) {}

void NSTextEditing::setJudge(Judge judge) { mJudge = std::move(judge); }

void NSTextEditing::start(std::u16string text)
{
    ++mEditNumber;
    mText = std::move(text);
    mBreaksKnown = false;
    mDone.clear();
    mUndone.clear();
    mForgotChanges = false;
    mPressed = {};
    select(mText.size(), mText.size());
}

void NSTextEditing::restart(std::u16string text)
{
    const Span before = selection();
    const bool everything = before.start == 0 && before.end == mText.size();
    const std::size_t anchor = mAnchor, caret = mCaret;
    start(std::move(text));
    if (everything)
        selectAll();
    else
        select(anchor, caret);
}

NSTextEditing::Span NSTextEditing::selection() const { return {std::min(mAnchor, mCaret), std::max(mAnchor, mCaret)}; }

std::u16string NSTextEditing::selectedText() const
{
    const Span range = selection();
    return mText.substr(range.start, range.end - range.start);
}

void NSTextEditing::selectAll() { select(0, mText.size()); }

void NSTextEditing::select(std::size_t anchor, std::size_t caret)
{
    mAnchor = snapped(anchor);
    mCaret = snapped(caret);
    mGroupOpen = false;
}

const NSTextEditing::Breaks& NSTextEditing::breaks() const
{
    if (!mBreaksKnown) {
        mBreaks = mFindBreaks(mText);
        mBreaksKnown = true;
    }
    return mBreaks;
}

/// The place for a caret at `index`, or the next one after it.
std::size_t NSTextEditing::snapped(std::size_t index) const
{
    const auto& carets = breaks().carets;
    const auto found = std::lower_bound(carets.begin(), carets.end(), index);
    return found == carets.end() ? mText.size() : *found;
}

std::size_t NSTextEditing::neighbour(Direction direction, Unit unit) const
{
    const bool forward = direction == Direction::forward;
    std::size_t result = forward ? mText.size() : 0;
    if (unit == Unit::character) {
        for (const std::size_t caret : breaks().carets) {
            if (forward && caret > mCaret) return caret;
            if (!forward && caret < mCaret) result = caret;
        }
    } else if (unit == Unit::word) {
        for (const Span& word : breaks().words) {
            if (forward && word.end > mCaret) return word.end;
            if (!forward && word.start < mCaret) result = word.start;
        }
    }
    return result;
}

/// The word at `index`, or what stands between two words.
NSTextEditing::Span NSTextEditing::wordAt(std::size_t index) const
{
    Span gap{0, mText.size()};
    for (const Span& word : breaks().words) {
        if (word.start <= index && index < word.end) return word;
        if (word.end == index && index == mText.size()) return word;
        if (word.end <= index) gap.start = word.end;
        if (word.start > index) gap.end = std::min(gap.end, word.start);
    }
    return gap;
}

void NSTextEditing::move(Direction direction, Unit unit, Selecting selecting)
{
    const Span range = selection();
    std::size_t target = neighbour(direction, unit);
    // without Shift, the first step out of a selection goes to its edge
    if (selecting == Selecting::no && !range.empty() && unit == Unit::character)
        target = direction == Direction::forward ? range.end : range.start;
    select(selecting == Selecting::extend ? mAnchor : target, target);
}

void NSTextEditing::press(std::size_t index, Unit unit, Selecting selecting)
{
    index = snapped(index);
    mPressUnit = unit;
    if (selecting == Selecting::extend) {
        mPressed = {mAnchor, mAnchor};
        return select(mAnchor, index);
    }
    mPressed = unit == Unit::character ? Span{index, index}
               : unit == Unit::word    ? wordAt(index)
                                       : Span{0, mText.size()};
    select(mPressed.start, mPressed.end);
}

void NSTextEditing::drag(std::size_t index)
{
    index = snapped(index);
    if (mPressUnit == Unit::all) return;
    const Span reached = mPressUnit == Unit::word ? wordAt(index) : Span{index, index};
    if (index < mPressed.start)
        select(mPressed.end, reached.start);
    else if (index > mPressed.end)
        select(mPressed.start, reached.end);
    else
        select(mPressed.start, mPressUnit == Unit::word ? mPressed.end : index);
}

bool NSTextEditing::insert(std::u16string_view text, Source source)
{
    const Span range = selection();
    const std::size_t kept = mText.size() - (range.end - range.start);
    const std::size_t room = kept < kMaxLength ? kMaxLength - kept : 0;
    if (text.size() > room) {
        const std::u16string_view looked = text.substr(0, room + kLookAhead);
        const auto carets = mFindBreaks(looked).carets;
        const auto beyond = std::upper_bound(carets.begin(), carets.end(), room);
        text = looked.substr(0, beyond == carets.begin() ? 0 : *(beyond - 1));
    }
    if (text.empty()) return false;
    return apply(range, text, source == Source::keyboard ? Change::typed : Change::single);
}

bool NSTextEditing::erase(Direction direction, Unit unit)
{
    Span range = selection();
    const bool hadSelection = !range.empty();
    if (!hadSelection) {
        const std::size_t target = neighbour(direction, unit);
        range = {std::min(mCaret, target), std::max(mCaret, target)};
    }
    return !range.empty() && apply(range, {}, hadSelection ? Change::single : Change::erased);
}

bool NSTextEditing::apply(Span where, std::u16string_view text, Change::Kind kind)
{
    Change change{where, mText.substr(where.start, where.end - where.start), std::u16string(text), mAnchor, mCaret,
                  kind};
    if (mJudge) {
        std::u16string proposed = mText;
        proposed.replace(where.start, where.end - where.start, text);
        const std::uint64_t edit = mEditNumber;
        std::optional<std::u16string> judged = mJudge(proposed);
        if (!judged || edit != mEditNumber) return false; // the judge may have ended this edit
        if (*judged != proposed) {
            change = differenceTo(*judged);
            if (change.removed == change.inserted) return false;
        }
    }
    replace(change.where, change.inserted);
    remember(std::move(change));
    return true;
}

/// The smallest change that makes `text` of the text.
NSTextEditing::Change NSTextEditing::differenceTo(std::u16string_view text) const
{
    const std::size_t shorter = std::min(mText.size(), text.size());
    std::size_t before = 0, behind = 0;
    while (before < shorter && mText[before] == text[before]) ++before;
    while (behind < shorter - before && mText[mText.size() - 1 - behind] == text[text.size() - 1 - behind]) ++behind;
    const Span where{before, mText.size() - behind};
    return {where,
            mText.substr(before, where.end - before),
            std::u16string(text.substr(before, text.size() - behind - before)),
            mAnchor,
            mCaret,
            Change::single};
}

void NSTextEditing::replace(Span where, std::u16string_view text)
{
    mText.replace(where.start, where.end - where.start, text);
    mBreaksKnown = false;
    mAnchor = mCaret = snapped(where.start + text.size());
}

void NSTextEditing::remember(Change change)
{
    mUndone.clear();
    const bool joined = mGroupOpen && joinLast(change);
    mGroupOpen = change.kind != Change::single;
    if (joined) return;
    if (mDone.size() == kMaxChanges) {
        mDone.erase(mDone.begin());
        mForgotChanges = true;
    }
    mDone.push_back(std::move(change));
}

bool NSTextEditing::joinLast(const Change& change)
{
    if (mDone.empty() || mDone.back().kind != change.kind) return false;
    Change& last = mDone.back();
    if (change.kind == Change::typed) {
        if (!change.removed.empty() || change.where.start != last.where.start + last.inserted.size()) return false;
        last.inserted += change.inserted;
        return true;
    }
    if (change.where.end == last.where.start)
        last.removed.insert(0, change.removed); // Backspace
    else if (change.where.start == last.where.start)
        last.removed += change.removed; // Delete
    else
        return false;
    last.where.start = change.where.start;
    last.where.end = last.where.start + last.removed.size();
    return true;
}

bool NSTextEditing::undo()
{
    if (mDone.empty()) return false;
    Change change = std::move(mDone.back());
    mDone.pop_back();
    replace({change.where.start, change.where.start + change.inserted.size()}, change.removed);
    select(change.anchorBefore, change.caretBefore);
    mUndone.push_back(std::move(change));
    return true;
}

bool NSTextEditing::redo()
{
    if (mUndone.empty()) return false;
    Change change = std::move(mUndone.back());
    mUndone.pop_back();
    replace(change.where, change.inserted);
    mGroupOpen = false;
    mDone.push_back(std::move(change));
    return true;
}

std::u16string_view NSTypableText(std::u16string_view characters)
{
    for (std::size_t i = 0; i < characters.size();) {
        const std::size_t units = UnitsAt(characters, i);
        if (units == 0 || IsControl(characters[i]) || IsFunctionKey(characters[i])) return {};
        i += units;
    }
    return characters;
}

std::u16string NSPastableText(std::u16string_view text)
{
    std::u16string result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t units = UnitsAt(text, i);
        if (IsLineEnd(text[i])) {
            if (text[i] != u'\n' || i == 0 || text[i - 1] != u'\r') result += u'\n';
        } else if (text[i] == u'\t' || (units != 0 && !IsControl(text[i]))) {
            result += text.substr(i, units);
        }
        i += std::max<std::size_t>(units, 1);
    }
    return result;
}
