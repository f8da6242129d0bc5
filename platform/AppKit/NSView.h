#pragma once

/// A rectangle of a window that draws and receives events.
///
/// Lengths are points; y grows downward; a view's own coordinates start at its top left. A superview retains its
/// subviews.

#include "AppKit/NSCursor.h"
#include "AppKit/NSResponder.h"
#include "CoreGraphics/CGContext.h"

class NSMenu;
class NSMenuItem;
class NSWindow;

#include <vector>

class NSView : public NSResponder {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    virtual bool initWithFrame(NSRect frame);
    /// Reads frame, hidden, toolTip; the loader adds subviews and connections afterwards.
    bool initWithCoder(NSCoder& coder) override;

    NSRect frame() const { return mFrame; }
    NSRect bounds() const { return {{0, 0}, mFrame.size}; }
    virtual void setFrame(NSRect frame);
    NSView* superview() const { return mSuperview; }
    NSWindow* window() const { return mWindow; }
    const std::vector<RetainPtr<NSView>>& subviews() const { return mSubviews; }
    void addSubview(NSView* view);                 ///< on top of the others
    void removeFromSuperview();                    ///< ends tracking and editing inside first
    bool isDescendantOf(const NSView* view) const; ///< itself included

    bool isHidden() const { return mHidden; }
    void setHidden(bool hidden);
    bool isHiddenOrHasHiddenAncestor() const;
    virtual RetainPtr<const NSString> toolTip() const { return mToolTip; }
    void setToolTip(const NSString* toolTip) { mToolTip = RetainPtr<const NSString>(toolTip); }
    NSMenu* menu() const;
    void setMenu(NSMenu* menu);
    /// The context menu for an event; the view's menu by default.
    virtual NSMenu* menuForEvent(NSEvent& event);
    /// Asked about an item that targets this view, before its menu opens; may set the item's state.
    /// @return whether the item can be chosen
    virtual bool validateUserInterfaceItem(NSMenuItem&) { return true; }

    NSPoint convertPointToWindow(NSPoint point) const;
    NSPoint convertPointFromWindow(NSPoint point) const;
    NSRect convertRectToWindow(NSRect rect) const;
    /// The deepest visible view at `point` (this view's coordinates); null outside.
    virtual NSView* hitTest(NSPoint point);

    void setNeedsDisplay(); ///< the whole view
    void setNeedsDisplayInRect(NSRect rect);
    /// Draws into the current graphics context, clipped to the view; `dirty` lies within the bounds.
    virtual void drawRect(NSRect dirty);
    /// A part of the bounds that `drawRect` always fills, so that nothing behind it need be drawn; may be empty.
    virtual NSRect opaqueRect() const { return {}; }
    /// The outline that the focus ring of this view hugs, in its own coordinates; empty for none. May lie outside the
    /// view. The ring itself reaches `kFocusRingReach` further. It stands around the first responder, or around the
    /// nearest view above it that has an outline: a field shows the ring of its editor.
    virtual NSRect focusRingBounds() const { return {}; }
    virtual CGFloat focusRingRadius() const { return 4; } ///< of the outline's corners
    /// Draws the ring around focusRingBounds(); called after all views have drawn, clipped to the window only.
    virtual void drawFocusRing();
    static constexpr CGFloat kFocusRingReach = 4;

    /// A key that nobody from the first responder on wanted: asked from the window's content inwards.
    /// @return whether it was taken
    virtual bool performKeyEquivalent(NSEvent& event);

    virtual bool canBecomeKeyView() const; ///< accepts first responder, is visible, and in a window
    virtual NSCursorShape cursorAtPoint(NSPoint) const { return NSCursorShape::arrow; }

    virtual void viewWillMoveToWindow(NSWindow*) {}
    virtual void viewDidMoveToWindow() {} ///< comes after that of the views inside
    /// The window ended the tracking that `NSWindow::beginTracking` started for this view: by the release of the button
    /// (`byRelease`), or by a lost grab, a hidden view, a view leaving its window, a closing window. Comes exactly
    /// once.
    virtual void trackingDidEnd(bool byRelease);
    /// Escape was pressed during a tracking, which ends after this: puts back what the press found.
    /// @return false where there is nothing to put back; the key then goes its way and the tracking goes on
    virtual bool abandonTracking() { return false; }

    NSResponder* nextResponder() const override;
    void rightMouseDown(NSEvent& event) override; ///< shows the context menu

    NSView();
    ~NSView() override;

protected:
    void dealloc() override;

private:
    friend class NSWindow;
    void moveToWindow(NSWindow* window);

    NSRect mFrame;
    NSView* mSuperview = nullptr;
    NSWindow* mWindow = nullptr;
    std::vector<RetainPtr<NSView>> mSubviews;
    bool mHidden = false;
    RetainPtr<const NSString> mToolTip;
    RetainPtr<NSObject> mMenu;
};
