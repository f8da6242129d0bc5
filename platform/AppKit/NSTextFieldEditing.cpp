// The edit of a text field: how it begins, what commits it, what drops it.

#include "AppKit/NSTextField.h"
#include "AppKit/NSWindow.h"

namespace {

constexpr std::u16string_view kTabsAndLineEnds = u"\t\n\r\x2028\x2029";

/// On one line: none at the ends, each of those inside a space.
std::u16string WithoutTabsAndLineEnds(const std::u16string& text)
{
    const std::size_t start = text.find_first_not_of(kTabsAndLineEnds);
    if (start == std::u16string::npos) return {};
    std::u16string line = text.substr(start, text.find_last_not_of(kTabsAndLineEnds) + 1 - start);
    for (char16_t& unit : line)
        if (kTabsAndLineEnds.find(unit) != std::u16string::npos) unit = u' ';
    return line;
}

} // namespace

bool NSTextField::becomeFirstResponder()
{
    const RetainPtr<NSTextField> keep(this);
    const RetainPtr<NSWindow> in(window());
    if (!in || !textCell() || mEditor) return false;
    NSTextView* const own = textCell()->fieldEditorForView(*this);
    mEditor = own ? own : in->fieldEditor();
    if (!mEditor) return false;
    ++mEditNumber;
    mTextAtStart = textCell()->editingText();
    const RetainPtr<NSTextView> editor = mEditor;
    editor->startEditing(this, textCell()->textStyle(), mTextAtStart, isEditable());
    editor->setFrame(bounds());
    editor->selectAll(nullptr);
    addSubview(editor);
    setNeedsDisplay();
    if (in->makeFirstResponder(editor)) return true;
    if (mEditor == editor) endEditing();
    return false;
}

void NSTextField::selectText(NSObject*)
{
    const RetainPtr<NSTextField> keep(this);
    if (!mEditor && window()) window()->makeFirstResponder(this);
    if (mEditor) mEditor->selectAll(nullptr);
}

void NSTextField::endEditing()
{
    if (!mEditor) return;
    ++mEditNumber;
    hideRefusal();
    std::exchange(mEditor, nullptr)->stopEditing();
    setNeedsDisplay();
}

void NSTextField::dropFocus()
{
    if (mEditor && window()) window()->resignFocusInside(this);
}

void NSTextField::abortEditing()
{
    if (!mEditor) return;
    hideRefusal();
    showValue();
    mEditor->selectAll(nullptr);
}

bool NSTextField::textShouldEndEditing()
{
    const RetainPtr<NSTextField> keep(this);
    const std::uint64_t edit = mEditNumber;
    if (!commit(Ending::byLeaving)) return false;
    if (edit == mEditNumber) endEditing(); // else the action has ended this edit, and maybe begun another
    return true;
}

/// @return false when the text is refused; true also when there was nothing to commit
bool NSTextField::commit(Ending ending)
{
    const RetainPtr<NSTextField> keep(this);
    hideRefusal();
    if (!mEditor || !mEditor->isEdited()) return true;
    RetainPtr<NSObject> value;
    if (!readText(value)) return false;
    const RetainPtr<NSCell> holder(cell());
    if (!holder) value = nullptr; // the cell was taken away during the edit, and the value with it
    if (value) holder->setObjectValue(value);
    showValue();
    mEditor->selectAll(nullptr);
    setNeedsDisplay();
    if (!value || (ending == Ending::byLeaving && !holder->sendsActionOnEndEditing())) return true;
    valueWasTyped();
    sendAction(action(), target()); // last, since it may do anything, throw included
    return true;
}

bool NSTextField::readText(RetainPtr<NSObject>& value)
{
    const auto text = NSString::string(mEditor->text());
    if (!formatter()) {
        value = text;
        return true;
    }
    // Choice: text that the formatter reads as no value at all, an emptied field, puts the old value back: nobody who
    // clears a gain means 0 dB. Test: NSTextField.Commits
    RetainPtr<NSString> why;
    if (formatter()->getObjectValue(&value, text.get(), &why)) return true;
    value = nullptr;
    if (text->units() == mTextAtStart) return true; // the formatter wrote it itself
    showRefusal(why.get());
    return false;
}

// --- what the editor asks

std::optional<std::u16string> NSTextField::textWillChange(const std::u16string& proposed)
{
    std::u16string accepted = proposed;
    if (formatter()) {
        RetainPtr<NSString> other, why;
        if (!formatter()->isPartialStringValid(NSString::string(proposed).get(), &other, &why)) {
            if (!other) {
                showRefusal(why.get());
                return std::nullopt;
            }
            accepted = other->units();
        }
    }
    return WithoutTabsAndLineEnds(accepted);
}

bool NSTextField::textCommand(const NSTextCommand& command, NSEvent& event)
{
    const RetainPtr<NSTextField> keep(this);
    const bool touched = mEditor->isEdited() || mRefused;
    switch (command.action) {
    case NSTextAction::accept:
        if (!touched) mEditor->selectAll(nullptr);
        commit(Ending::byReturn);
        return true;
    case NSTextAction::cancel:
        if (!touched) return false;
        abortEditing();
        return true;
    case NSTextAction::stepUp:
        return stepWithKey(true, event);
    case NSTextAction::stepDown:
        return stepWithKey(false, event);
    default:
        return false;
    }
}

bool NSTextField::stepWithKey(bool, NSEvent&) { return false; }

// --- the note beside the field

void NSTextField::showRefusal(const NSString* why)
{
    const RetainPtr<const NSString> reason(why);
    hideRefusal();
    mRefused = true;
    redrawWithRing();
    if (!reason || reason->length() == 0 || !window()) return;
    const NSRect room = {{0, 0}, window()->contentSize()};
    mBubble = make<NSTextBubble>(&NSTextBubble::initWithText, reason.get(), convertRectToWindow(bounds()), room);
    window()->addOverlay(mBubble);
}

void NSTextField::hideRefusal()
{
    if (!mRefused) return;
    mRefused = false;
    const RetainPtr<NSTextBubble> bubble = std::exchange(mBubble, nullptr);
    if (bubble && window()) window()->removeOverlay(bubble);
    redrawWithRing();
}

void NSTextField::redrawWithRing()
{
    const NSRect reached = CGRectInset(convertRectToWindow(bounds()), -kFocusRingReach, -kFocusRingReach);
    if (window()) window()->setNeedsDisplayInRect(reached);
}
