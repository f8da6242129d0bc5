#pragma once

/// One line of text: a label, or a field that is typed into.
///
/// An edit begins when the field gets the focus: by Tab with all of the text selected, by a press with the caret there.
/// It works on the formatter's editing text. Return, Tab and a press elsewhere commit it:
///
/// - Where nothing was typed there is nothing to commit; the formatter isn't asked and no action is sent.
/// - Text that the formatter accepts becomes the value, then the action is sent once, then the field shows what its
/// value
///   is by then. Leaving the field only sends the action where the cell's `sendsActionOnEndEditing` says so.
/// - Text that it refuses stays, with the focus, a red ring, and a note that says why; so does the text before a change
///   that the formatter doesn't allow while typing.
///
/// Escape puts the value back and sends nothing; where nothing was typed it goes on to the next responder. An edit is
/// given up when the field is disabled, hidden or removed, or its window closes.
///
/// A value set during an edit is stored at once, and shown at once where nothing was typed yet; else it is shown when
/// the edit ends, unless the edit is committed over it.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSControl.h"
#include "AppKit/NSTextBubble.h"
#include "AppKit/NSTextFieldCell.h"

class NSTextField : public NSControl, private NSTextViewClient {
public:
    NS_CLASS(NSTextField)

    /// An editable field with a frame, unless the cell was made from a description before.
    bool initWithFrame(NSRect frame) override;
    RetainPtr<NSCell> makeCell() const override;

    bool isEditable() const;
    void setEditable(bool editable);
    bool isSelectable() const;
    void setSelectable(bool selectable);
    bool isBordered() const;
    void setBordered(bool bordered);
    bool drawsBackground() const;
    void setDrawsBackground(bool draws);
    const NSString* placeholderString() const;
    void setPlaceholderString(const NSString* text);
    void setAlignment(NSTextAlignment alignment);

    void setObjectValue(NSObject* value) override;
    void setDoubleValue(double value) override;
    void setFloatValue(float value) override;
    void setIntValue(int value) override;
    void setStringValue(const NSString* value) override;
    /// What was being typed is dropped: it was meant for the other formatter.
    void setFormatter(NSFormatter* formatter) override;
    void setFrame(NSRect frame) override;

    /// The editor while the field is edited, else null.
    NSTextView* currentEditor() const { return mEditor; }
    /// Gives the field the focus and selects all of its text.
    void selectText(NSObject* sender);
    /// Drops what was typed and shows the value, as the formatter writes it now, all selected. The focus stays.
    void abortEditing() override;
    /// What the note beside the field says; null where nothing is refused.
    const NSString* refusalText() const { return mBubble ? mBubble->text() : nullptr; }
    NSAppearanceColorName borderColor() const;

    NSRect opaqueRect() const override; ///< all but the corners
    NSRect valueRect() const override;  ///< where text may stand
    bool acceptsFirstResponder() const override { return isEnabled() && isSelectable(); }
    bool canBecomeKeyView() const override { return isEditable() && NSControl::canBecomeKeyView(); }
    bool becomeFirstResponder() override;
    void mouseDown(NSEvent& event) override;
    void mouseEntered(NSEvent& event) override;
    void mouseExited(NSEvent& event) override;
    NSCursorShape cursorAtPoint(NSPoint point) const override;

protected:
    void dealloc() override;
    /// The value is what a person typed now; the action follows.
    virtual void valueWasTyped() {}
    /// Up or Down was pressed during an edit. @return false to move the caret to the start or the end instead
    virtual bool stepWithKey(bool up, NSEvent& event);
    /// What stands in the editor as a value; null where it stands for none and the old value remains. Needs an edit.
    /// @return false when it is refused, which the person is told
    bool readText(RetainPtr<NSObject>& value);

private:
    enum class Ending { byReturn, byLeaving };

    NSTextFieldCell* textCell() const; ///< null where the field has been given another kind of cell
    void valueChanged();
    void showValue();
    void endEditing();
    void dropFocus();
    bool commit(Ending ending);
    void showRefusal(const NSString* why);
    void hideRefusal();
    void redrawWithRing();

    std::optional<std::u16string> textWillChange(const std::u16string& proposed) override;
    void textDidChange() override { hideRefusal(); }
    bool textCommand(const NSTextCommand& command, NSEvent& event) override;
    bool textShouldEndEditing() override;
    void textDidAbort() override { abortEditing(); }
    bool textIsRefused() const override { return mRefused; }

    RetainPtr<NSTextView> mEditor; // while an edit lasts
    std::u16string mTextAtStart;
    std::uint64_t mEditNumber = 0;
    RetainPtr<NSTextBubble> mBubble;
    bool mRefused = false;
    bool mHovered = false;
};
