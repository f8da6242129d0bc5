#pragma once

/// What a text field shows: its value as text, in a frame or bare, with a placeholder where there is no text.
///
/// One line, centred between top and bottom; text that doesn't fit ends in an ellipsis.

#include "AppKit/NSCell.h"
#include "AppKit/NSTextView.h"

class NSTextFieldCell : public NSCell {
public:
    NS_CLASS(NSTextFieldCell)

    /// Reads `placeholderString`, `editable`, `selectable`, `drawsBackground` and `borderStyle` ("bezel", "border" or
    /// "line"; no frame for "none" and where it is missing). The title is the first value.
    bool initWithCoder(NSCoder& coder) override;

    bool isEditable() const { return mEditable; }
    void setEditable(bool editable) { mEditable = editable; }
    bool isSelectable() const { return mSelectable || mEditable; }
    void setSelectable(bool selectable) { mSelectable = selectable; }
    bool isBordered() const { return mBordered; }
    void setBordered(bool bordered) { mBordered = bordered; }
    bool drawsBackground() const { return mDrawsBackground; }
    void setDrawsBackground(bool draws) { mDrawsBackground = draws; }
    const NSString* placeholderString() const { return mPlaceholder; }
    void setPlaceholderString(const NSString* text) { mPlaceholder = text; }

    /// The text that an edit begins with.
    std::u16string editingText() const;
    /// How text is set here, also while it is edited.
    NSTextStyle textStyle() const;

    void drawWithFrame(NSRect frame, NSView& view) override;
    /// Where text may stand: inside of the frame's line, and between its corners.
    NSRect textRect(NSRect frame) const
    {
        return mBordered ? CGRectInset(frame, NSMetrics::controlCornerRadius, 1) : frame;
    }

private:
    void drawBox(CGContextRef context, NSRect frame, const NSView& view) const;
    void drawText(CGContextRef context, NSRect frame) const;

    RetainPtr<const NSString> mPlaceholder;
    bool mEditable = false, mSelectable = false, mBordered = false, mDrawsBackground = false;
};
