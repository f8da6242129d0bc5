#pragma once

/// A window: a tree of views, the first responder, tracking, and a backing bitmap.
///
/// Views draw into the bitmap when something asked for it (`setNeedsDisplay`), once per run-loop turn; only what
/// changed goes to the backend.

#include "AppKit/NSDirtyRegion.h"
#include "AppKit/NSView.h"
#include "AppKit/NSWindowBackend.h"
#include "Foundation/WeakPtr.h"

class NSTextView;
class NSToolTipTracker;

class NSWindow : public NSResponder, private NSWindowBackendClient {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// @param display  must outlive the window; @return false when the display can't make one
    virtual bool initWithDisplay(NSDisplay* display, const NSBackendWindowOptions& options);
    /// A pop-up window over `parent`, at `frame` in the parent's content coordinates.
    virtual bool initPopUp(NSWindow* parent, NSRect frame);

    NSView* contentView() const { return mContentView; }
    void setContentView(NSView* view);           ///< fills the window; the window takes the view's size
    NSSize contentSize() const { return mSize; } ///< what the window system gave; may be larger than the content view
    void setTitle(const NSString* title);
    CGFloat backingScaleFactor() const { return mScale; }
    NSNativeWindow nativeWindow() const; ///< 0 once closed
    NSRect screenFrame() const;          ///< see NSWindowBackend
    void orderFront();
    void orderOut(); ///< ends tracking; the edit stays
    bool isVisible() const { return mVisible; }
    /// Ends editing (the edit is given up) and tracking, hides the window for good, calls the close handler once.
    void close();
    void setCloseHandler(std::function<void()> handler); ///< after the window closed, by the person or by code
    bool isKeyWindow() const { return mKey; }            ///< has the keyboard

    // --- events

    /// Delivers an event as if the window system had sent it. A press on what no view wants ends the editing; an
    /// exception of a handler passes through and leaves the window usable.
    /// @return false when no responder wanted it
    bool sendEvent(NSEvent& event);
    NSResponder* firstResponder() const; ///< the window itself when no view has the focus
    /// @param responder  null for the window itself. @return false when the old one stays or the new one refuses
    bool makeFirstResponder(NSResponder* responder);
    void selectNextKeyView();
    void selectPreviousKeyView();
    /// The views that Tab walks, in the order of the view tree. What lies inside of one is a part of it.
    std::vector<NSView*> keyViews() const;

    /// Routes drags and the release of the pressed button to `view`, which is retained meanwhile, and ends in its
    /// `trackingDidEnd`. A tracking that still runs ends first.
    void beginTracking(NSView* view);
    NSView* trackingView() const { return mTrackingView; }
    /// Ends the tracking now, if `inside` is null or holds the tracking view.
    void endTracking(const NSView* inside = nullptr);
    /// Takes the focus away from `view` and what is in it, even from one that refuses.
    void resignFocusInside(const NSView* view);

    // --- field editor

    /// The window's own field editor, made on first use.
    NSTextView* fieldEditor();

    // --- drawing

    void setNeedsDisplayInRect(NSRect rect); ///< content coordinates
    void displayIfNeeded();
    bool needsDisplay() const { return !mDirty.empty(); }
    /// The pixels of the window's content, for screenshots and tests; drawn up to date first. Null once closed.
    CGContextRef bitmap();
    /// Draws `view` above all others, at its frame in content coordinates; it takes no mouse events. Retained.
    void addOverlay(NSView* view);
    void removeOverlay(NSView* view);

    void mouseDown(NSEvent& event) override; ///< a press that no view wanted
    void keyDown(NSEvent& event) override;   ///< Tab and Shift-Tab
    void noResponderFor(NSEvent& event) override;

    NSWindow();
    ~NSWindow() override;

protected:
    void dealloc() override;

private:
    friend class NSView; // tells what moved, went away or was hidden

    bool start(std::unique_ptr<NSWindowBackend> backend, NSSize size);
    void stop();

    void backendEvent(NSEvent& event) override { sendEvent(event); }
    void backendResized(NSSize points, CGFloat scale) override;
    void backendExposed() override;
    void backendFocusChanged(bool focused) override;
    void backendCloseRequested() override { close(); }
    void backendGrabLost() override;
    void backendDestroyed() override { close(); }

    // events
    void dispatch(NSEvent& event);
    void sendPress(NSEvent& event);
    void sendDrag(NSEvent& event);
    void sendRelease(NSEvent& event);
    void sendToViewUnderPointer(NSEvent& event, void (NSResponder::*message)(NSEvent&));
    void sendKey(NSEvent& event);
    bool showContextMenu(NSView& view, NSEvent& event);
    void updateHover(NSEvent& event);
    void setHovered(NSView* view, NSEvent& event);
    bool contentTakesKey(NSEvent& event) const;
    void finishTracking(bool byRelease);
    RetainPtr<NSView> viewAt(NSPoint point) const;
    void selectKeyView(int step);

    // the view tree
    void viewGoesAway(NSView& view);
    void contentViewResized();

    // drawing
    void markDirty(NSRect rect);
    void displayAtPace();
    std::vector<CGRect> draw();
    void drawPixels(CGContextRef bitmap, CGRect pixels);
    void drawRing(CGContextRef bitmap) const;
    void updateRing();
    NSView* ringView() const;

    std::unique_ptr<NSWindowBackend> mBackend;
    RetainPtr<NSView> mContentView;
    std::vector<RetainPtr<NSView>> mOverlays;
    NSSize mSize;
    CGFloat mScale = 1;
    bool mVisible = false, mKey = false, mClosed = false;
    std::function<void()> mCloseHandler;
    std::uint64_t mObserver = 0;
    RetainPtr<NSObject> mAppearanceObserver;

    RetainPtr<NSResponder> mFirstResponder; // null stands for the window
    unsigned mFocusChanges = 0;
    NSResponder* mResigning = nullptr; // is being asked to give up the focus
    RetainPtr<NSResponder> mFieldEditor;

    RetainPtr<NSView> mTrackingView;
    bool mTracksRightButton = false;
    WeakPtr<NSView> mPressedView, mHoveredView;
    NSCursorShape mCursor = NSCursorShape::arrow;
    NSEvent* mEvent = nullptr; // the one that is being delivered
    bool mEventUnwanted = false;
    std::unique_ptr<NSToolTipTracker> mToolTips;

    NSDirtyRegion mDirty;
    RetainPtr<CGContext> mBitmap;
    bool mDrawing = false;
    NSRect mRing; // what the focus ring covers in the bitmap, in points
};
