#pragma once

/// What a control shows: value, formatter, looks. The control owns its cell and forwards to it.

#include "AppKit/NSEvent.h"
#include "CoreText/CTLine.h"
#include "Foundation/NSFormatter.h"
#include "Foundation/NSNumber.h"
#include "Foundation/WeakPtr.h"

class NSColor;
class NSTextView;
class NSView;

enum NSTextAlignment { NSLeftTextAlignment, NSRightTextAlignment, NSCenterTextAlignment };
/// "right" and "center"; anything else, and null, is left.
NSTextAlignment NSTextAlignmentNamed(const NSString* name);
enum NSCellStateValue : int { NSOffState = 0, NSOnState = 1 };

class NSCell : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// Reads enabled, title, alignment, font, textColor, formatter, sendsActionOnEndEditing, continuous.
    bool initWithCoder(NSCoder& coder) override;

    // --- value: an object; numbers pass in and out of it
    virtual NSObject* objectValue() const { return mObjectValue; }
    virtual void setObjectValue(NSObject* value);
    virtual double doubleValue() const; ///< of a number, or of text that begins with one; else 0
    virtual void setDoubleValue(double value);
    virtual float floatValue() const;
    virtual void setFloatValue(float value);
    virtual int intValue() const;
    virtual void setIntValue(int value);
    /// The value as text: the formatter's where there is one.
    virtual RetainPtr<NSString> stringValue() const;
    virtual void setStringValue(const NSString* value);
    NSFormatter* formatter() const { return mFormatter; }
    void setFormatter(NSFormatter* formatter) { mFormatter = formatter; }

    bool isEnabled() const { return mEnabled; }
    void setEnabled(bool enabled) { mEnabled = enabled; }
    bool isContinuous() const { return mContinuous; } ///< sends its action while the mouse moves, too
    void setContinuous(bool continuous) { mContinuous = continuous; }
    const NSString* title() const { return mTitle; }
    void setTitle(const NSString* title);
    NSTextAlignment alignment() const { return mAlignment; }
    void setAlignment(NSTextAlignment alignment) { mAlignment = alignment; }
    CTFontRef font() const; ///< the system font where none was set
    void setFont(CTFontRef font);
    bool sendsActionOnEndEditing() const { return mSendsActionOnEndEditing; }
    void setSendsActionOnEndEditing(bool sends) { mSendsActionOnEndEditing = sends; }
    NSColor* textColor() const; ///< null where none was set
    void setTextColor(NSColor* color);
    NSObject* target() const { return mTarget; } ///< not retained; null once it is gone
    void setTarget(NSObject* target) { mTarget = target; }
    SEL action() const { return mAction; } ///< null for none
    void setAction(SEL action) { mAction = action; }

    /// Draws into the current context. `frame` in the view's coordinates.
    virtual void drawWithFrame(NSRect frame, NSView& view);
    /// The editor that types into this cell in `view`; null for the window's own.
    virtual NSTextView* fieldEditorForView(NSView& view);

    NSCell();
    ~NSCell() override;

private:
    RetainPtr<NSObject> mObjectValue;
    RetainPtr<NSFormatter> mFormatter;
    RetainPtr<const NSString> mTitle;
    RetainPtr<const CTFont> mFont;
    RetainPtr<NSColor> mTextColor;
    WeakPtr<NSObject> mTarget;
    SEL mAction = nullptr;
    NSTextAlignment mAlignment = NSLeftTextAlignment;
    bool mEnabled = true;
    bool mContinuous = true;
    bool mSendsActionOnEndEditing = false;
};
