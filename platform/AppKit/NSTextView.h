#pragma once

/// The field editor: the view that is typed into while a text field is edited.
///
/// It is the first responder and lies over its field, so that presses reach it. It owns the text while the edit lasts
/// and knows no values: what may stand in it, and what Return, Escape and the loss of the focus mean, its client says.
/// `startEditing` begins an edit, `stopEditing` ends it and forgets everything; between edits the view has no client
/// and no size, and may stay where it was.
///
/// Text that is wider than the view scrolls, so that the caret is seen.

#include "AppKit/NSCaretBlink.h"
#include "AppKit/NSCell.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSTextKeys.h"
#include "AppKit/NSView.h"
#include "Foundation/NSClass.h"

#include <memory>

/// What the owner of a field editor decides. Each call may end the edit.
class NSTextViewClient {
public:
    /// @return the text to put there, usually the proposed one; none to refuse it
    virtual std::optional<std::u16string> textWillChange(const std::u16string& proposed) = 0;
    virtual void textDidChange() = 0;
    /// Return, Escape, Up and Down. @return false for an event that goes on to the next responder
    virtual bool textCommand(const NSTextCommand& command, NSEvent& event) = 0;
    virtual bool textShouldEndEditing() = 0; ///< @return false to keep the focus
    virtual void textDidAbort() = 0;
    virtual bool textIsRefused() const = 0; ///< what stands there was refused: the ring is red

protected:
    ~NSTextViewClient() = default;
};

struct NSTextStyle {
    RetainPtr<const CTFont> font;
    RetainPtr<const NSColor> color;
    NSTextAlignment alignment = NSLeftTextAlignment;
    CGFloat inset = 0; ///< between the view's sides and the text, in points
};

/// Where a line's baseline starts in `area`: aligned, and centred between top and bottom.
CGPoint NSTextOrigin(NSRect area, CTLineRef line, CTFontRef font, NSTextAlignment alignment);

class NSTextView : public NSView {
public:
    NS_CLASS(NSTextView)

    NSTextView();
    ~NSTextView() override;

    /// A field editor is a part of its field: Tab and Return leave it, and Tab never stops at it.
    bool isFieldEditor() const { return mIsFieldEditor; }
    void setFieldEditor(bool isFieldEditor) { mIsFieldEditor = isFieldEditor; }

    /// @param client    not owned; the edit must be stopped before it goes away
    /// @param editable  false: the text can only be selected and copied
    void startEditing(NSTextViewClient* client, NSTextStyle style, std::u16string text, bool editable);
    void stopEditing();
    /// Other text in the same edit, as if nothing had been typed. The selection stays, or stays everything.
    void replaceText(std::u16string text);

    const std::u16string& text() const { return mEditing.text(); }
    bool isEdited() const { return mEditing.isEdited(); } ///< something was typed
    NSTextEditing::Span selection() const { return mEditing.selection(); }
    std::size_t caret() const { return mEditing.caret(); }

    void selectAll(NSObject* sender);
    void copy(NSObject* sender);
    void cut(NSObject* sender);
    void paste(NSObject* sender); ///< when the clipboard's owner has answered, if this edit still lasts then

    bool acceptsFirstResponder() const override { return mClient != nullptr; }
    bool canBecomeKeyView() const override { return !mIsFieldEditor && NSView::canBecomeKeyView(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void abortEditing() override;

    void keyDown(NSEvent& event) override;
    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent&) override {}             // ends the tracking, no more
    NSMenu* menuForEvent(NSEvent& event) override; ///< its own, else the field's
    NSCursorShape cursorAtPoint(NSPoint) const override { return NSCursorShape::text; }

    void drawRect(NSRect dirty) override;
    NSRect focusRingBounds() const override { return bounds(); }
    CGFloat focusRingRadius() const override;
    void drawFocusRing() override;

protected:
    void dealloc() override;

private:
    struct Session {}; // its life is the edit's; callbacks hold it weakly

    NSTextEditing::Breaks findBreaks(std::u16string_view text) const;
    std::optional<std::u16string> judge(const std::u16string& proposed);
    void perform(const NSTextCommand& command);
    void insertPasted(const NSString* text);
    void textChanged();
    void selectionChanged();
    std::size_t indexAtEvent(const NSEvent& event, NSTextEditing::Unit unit) const;

    NSRect textArea() const;
    CTLineRef line() const;
    CGPoint lineOrigin() const;
    CGFloat caretOffset() const;
    NSRect caretRect() const;
    void scrollToCaret();
    void drawSelection(CGContextRef context) const;

    NSTextViewClient* mClient = nullptr;
    NSTextStyle mStyle;
    NSTextEditing mEditing;
    std::shared_ptr<Session> mSession;
    NSCaretBlink mBlink;
    mutable RetainPtr<CTLine> mLine; // of the whole text; null when it must be shaped again
    CGFloat mScrolled = 0;           // how far the line's start lies left of the text area
    bool mIsFieldEditor = false;
    bool mEditable = true;
    bool mFocused = false;
};
