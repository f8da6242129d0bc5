#pragma once

/// A window: a tree of views, the first responder, tracking, and a backing bitmap.
///
/// Views draw into the bitmap when something asked for it (`setNeedsDisplay`), once per run-loop turn; only what changed goes to the
/// backend.

#include "AppKit/NSView.h"
#include "AppKit/NSWindowBackend.h"

class NSTextView;

class NSWindow : public NSResponder, private NSWindowBackendClient {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// @param display  must outlive the window; @return false when the display can't make one
    virtual bool initWithDisplay(NSDisplay* display, const NSBackendWindowOptions& options);
    /// A pop-up window over `parent`, at `frame` in the parent's content coordinates.
    virtual bool initPopUp(NSWindow* parent, NSRect frame);

    NSView* contentView() const { return mContentView; }
    void setContentView(NSView* view); ///< fills the window; the window takes the view's size
    void setTitle(const NSString* title);
    CGFloat backingScaleFactor() const;
    NSNativeWindow nativeWindow() const;
    NSRect screenFrame() const; ///< see NSWindowBackend
    void orderFront();
    void orderOut();
    bool isVisible() const { return mVisible; }
    /// Ends editing (the edit is given up) and tracking, hides the window for good, calls the close handler once.
    void close();
    void setCloseHandler(std::function<void()> handler); ///< after the window closed, by the person or by code
    bool isKeyWindow() const { return mKey; }            ///< has the keyboard

    // --- events

    /// Delivers an event as if the window system had sent it. @return false when no responder wanted it
    bool sendEvent(NSEvent& event);
    NSResponder* firstResponder() const { return mFirstResponder; } ///< the window itself when no view has the focus
    /// @param responder  null for the window itself. @return false when the old one stays or the new one refuses
    bool makeFirstResponder(NSResponder* responder);
    void selectNextKeyView();
    void selectPreviousKeyView();
    /// The views that Tab walks, in the order of the view tree.
    std::vector<NSView*> keyViews() const;

    /// Routes drags and the release of the pressed button to `view`, which is retained meanwhile, and ends in its `trackingDidEnd`.
    void beginTracking(NSView* view);
    NSView* trackingView() const { return mTrackingView; }
    /// Ends the tracking now, if `inside` is null or holds the tracking view.
    void endTracking(const NSView* inside = nullptr);

    // --- field editor

    /// The window's own field editor, made on first use.
    NSTextView* fieldEditor();

    // --- drawing

    void setNeedsDisplayInRect(NSRect rect); ///< content coordinates
    void displayIfNeeded();
    bool needsDisplay() const { return !mDirty.empty(); }
    /// The pixels of the window's content, for screenshots and tests; drawn up to date first.
    CGContextRef bitmap();

    void keyDown(NSEvent& event) override; ///< Tab and Shift-Tab
    void noResponderFor(NSEvent& event) override;
};
