#include "AppKit/NSTextView.h"

#include "AppKit/NSPasteboard.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSTextView, NSView, "")
    .action("selectAll:", &NSTextView::selectAll)
        .action("copy:", &NSTextView::copy)
        .action("cut:", &NSTextView::cut)
        .action("paste:", &NSTextView::paste)
NS_CLASS_TABLE_END

NSTextView::NSTextView()
    : mEditing([this](std::u16string_view text) { return findBreaks(text); }),
      mBlink([this] { setNeedsDisplayInRect(CGRectInset(caretRect(), -1, -1)); })
{
    mEditing.setJudge([this](const std::u16string& proposed) { return judge(proposed); });
}

NSTextView::~NSTextView() = default;

void NSTextView::dealloc()
{
    stopEditing();
    NSView::dealloc();
}

// --- the edit

void NSTextView::startEditing(NSTextViewClient* client, NSTextStyle style, std::u16string text, bool editable)
{
    mClient = client;
    mStyle = std::move(style);
    mEditable = editable;
    mSession = std::make_shared<Session>();
    mScrolled = 0;
    mLine.reset();
    mEditing.start(std::move(text));
    setNeedsDisplay();
}

void NSTextView::stopEditing()
{
    mClient = nullptr;
    mSession.reset();
    mBlink.stop();
    mLine.reset();
    mEditing.start({});
    if (window()) window()->endTracking(this);
    setFrame({});
}

void NSTextView::replaceText(std::u16string text)
{
    mLine.reset();
    mEditing.restart(std::move(text));
    selectionChanged();
}

NSTextEditing::Breaks NSTextView::findBreaks(std::u16string_view text) const
{
    if (text.empty()) return {{0}, {}};
    const auto shaped = CTLineCreate(text, mStyle.font.get());
    NSTextEditing::Breaks breaks{CTLineGetCaretPositions(shaped.get()), {}};
    for (const CTLineWord& word : CTLineGetWords(shaped.get())) breaks.words.push_back({word.start, word.end});
    return breaks;
}

std::optional<std::u16string> NSTextView::judge(const std::u16string& proposed)
{
    if (!mClient || !mEditable) return std::nullopt;
    return mClient->textWillChange(proposed);
}

void NSTextView::textChanged()
{
    mLine.reset();
    if (mClient) mClient->textDidChange();
    if (mClient) selectionChanged();
}

void NSTextView::selectionChanged()
{
    if (mFocused) mBlink.start();
    scrollToCaret();
    setNeedsDisplay();
}

// --- the focus

bool NSTextView::becomeFirstResponder()
{
    mFocused = true;
    mBlink.start();
    setNeedsDisplay();
    return true;
}

bool NSTextView::resignFirstResponder()
{
    const RetainPtr<NSTextView> keep(this);
    if (mClient && !mClient->textShouldEndEditing()) return false;
    mFocused = false;
    mBlink.stop();
    setNeedsDisplay();
    return true;
}

void NSTextView::abortEditing()
{
    const RetainPtr<NSTextView> keep(this);
    if (mClient) mClient->textDidAbort();
}

// --- keys

void NSTextView::keyDown(NSEvent& event)
{
    const RetainPtr<NSTextView> keep(this);
    const NSTextCommand command = NSTextCommandForKey(event.keyCharacter(), event.modifierFlags());
    const bool concernsField = command.action >= NSTextAction::firstOfField;
    if (!mClient || (!mEditable && command.action >= NSTextAction::firstChange)) return NSView::keyDown(event);
    if (concernsField && mClient->textCommand(command, event)) return;
    if (command.action == NSTextAction::accept || command.action == NSTextAction::cancel) return NSView::keyDown(event);
    if (!mClient) return;
    if (command.action == NSTextAction::undo || command.action == NSTextAction::redo) {
        const bool done = command.action == NSTextAction::undo ? mEditing.undo() : mEditing.redo();
        return done ? textChanged() : NSView::keyDown(event); // there may be more to undo than this text
    }
    if (command.action != NSTextAction::none) return perform(command);
    const std::u16string_view typed = mEditable ? NSTextTypedByKey(event) : std::u16string_view();
    if (typed.empty()) return NSView::keyDown(event);
    if (mEditing.insert(typed)) textChanged();
}

void NSTextView::perform(const NSTextCommand& command)
{
    switch (command.action) {
    case NSTextAction::move:
    case NSTextAction::stepUp:
    case NSTextAction::stepDown:
        mEditing.move(command.direction, command.unit, command.selecting);
        return selectionChanged();
    case NSTextAction::erase:
        if (mEditing.erase(command.direction, command.unit)) textChanged();
        return;
    case NSTextAction::selectAll:
        return selectAll(nullptr);
    case NSTextAction::copy:
        return copy(nullptr);
    case NSTextAction::cut:
        return cut(nullptr);
    case NSTextAction::paste:
        return paste(nullptr);
    case NSTextAction::undo: // done in keyDown
    case NSTextAction::redo:
    case NSTextAction::none:
    case NSTextAction::accept:
    case NSTextAction::cancel:
        return;
    }
}

void NSTextView::selectAll(NSObject*)
{
    mEditing.selectAll();
    selectionChanged();
}

void NSTextView::copy(NSObject*)
{
    if (!mEditing.selection().empty()) NSPasteboard::setString(NSString::string(mEditing.selectedText()).get());
}

void NSTextView::cut(NSObject* sender)
{
    const RetainPtr<NSTextView> keep(this);
    if (mEditing.selection().empty()) return;
    copy(sender);
    if (mEditing.erase(NSTextEditing::Direction::backward, NSTextEditing::Unit::character)) textChanged();
}

void NSTextView::paste(NSObject*)
{
    if (!mClient || !mEditable) return;
    NSPasteboard::readString([this, session = std::weak_ptr(mSession)](const NSString* text) {
        if (!session.expired()) insertPasted(text); // the session dies with the edit, at the latest with this view
    });
}

void NSTextView::insertPasted(const NSString* text)
{
    const RetainPtr<NSTextView> keep(this);
    if (text && mEditing.insert(NSPastableText(text->units()), NSTextEditing::Source::clipboard)) textChanged();
}

// --- the mouse

std::size_t NSTextView::indexAtEvent(const NSEvent& event, NSTextEditing::Unit unit) const
{
    const CGFloat x = convertPointFromWindow(event.locationInWindow()).x - lineOrigin().x;
    const std::size_t nearest = CTLineGetStringIndexForPosition(line(), x);
    if (unit != NSTextEditing::Unit::word || nearest == 0) return nearest;
    // on the right half of a letter the next caret is nearer, but the letter's word is meant
    return CTLineGetOffsetForStringIndex(line(), nearest) > x ? nearest - 1 : nearest;
}

void NSTextView::mouseDown(NSEvent& event)
{
    using enum NSTextEditing::Unit;
    const RetainPtr<NSTextView> keep(this);
    if (!mClient || !window()) return NSView::mouseDown(event);
    const auto unit = event.clickCount() <= 1 ? character : event.clickCount() == 2 ? word : all;
    const bool extends = (event.modifierFlags() & NSShiftKeyMask) != 0;
    mEditing.press(indexAtEvent(event, unit), unit,
                   extends ? NSTextEditing::Selecting::extend : NSTextEditing::Selecting::no);
    selectionChanged();
    window()->beginTracking(this);
}

void NSTextView::mouseDragged(NSEvent& event)
{
    if (!mClient) return;
    mEditing.drag(indexAtEvent(event, mEditing.pressUnit()));
    selectionChanged();
}

NSMenu* NSTextView::menuForEvent(NSEvent& event)
{
    NSMenu* const own = NSView::menuForEvent(event);
    return own || !superview() ? own : superview()->menuForEvent(event);
}
