#pragma once

/// A window of the X server: a top-level window, or one embedded into a window of another program.

#include "AppKit/NSClickCounter.h"
#include "AppKit/NSWindowBackend.h"
#include "X11/X11Server.h"
#include "X11/X11Surface.h"

#include <optional>

class X11Window : public NSWindowBackend {
public:
    /// Null, with a line in the log, when the server refuses, for instance because the parent is gone.
    static std::unique_ptr<X11Window> create(std::shared_ptr<X11Server> server, NSWindowBackendClient& client,
                                             const NSBackendWindowOptions& options);
    ~X11Window() override;
    X11Window(const X11Window&) = delete;
    X11Window& operator=(const X11Window&) = delete;

    void show() override;
    void hide() override;
    void setTitle(const NSString* title) override;
    void setContentSize(NSSize points) override;
    CGFloat backingScale() const override { return mScale; }
    void present(CGContextRef bitmap, std::span<const CGRect> pixelRects) override;
    void setCursor(NSCursorShape shape) override;
    void takeFocus() override;
    NSNativeWindow nativeWindow() const override { return mId; }
    NSRect screenFrame() const override;

    // --- from the server; the window may be gone afterwards

    void handle(const xcb_generic_event_t& event);
    void presented(xcb_shm_seg_t segment, std::uint32_t request); ///< the server has read these pixels
    /// Takes the scale, and keeps the size in points, where the window was asked for without a scale of its own.
    void desktopScaleChanged(CGFloat scale);
    void destroyed();                               ///< the native window no longer exists
    virtual void pointerLost();                     ///< a pressed button will not be seen released
    xcb_window_t parent() const { return mParent; } ///< the foreign window around this one; 0 for none

protected:
    struct Place {
        CGPoint origin; // pixels, in the parent
        NSSize points;
        bool overridesRedirect = false;
    };

    X11Window(std::shared_ptr<X11Server> server, NSWindowBackendClient& client, CGFloat scale, xcb_window_t parent);
    bool createNative(const Place& place);
    void setWindowType(X11Atom type);
    NSWindowBackendClient& client() { return mClient; }
    xcb_window_t id() const { return mId; }
    X11Connection& connection() const { return mServer->connection(); }
    virtual void keyboardUngrabbed() {} ///< a grab by this window ended

private:
    friend class X11PopUp;

    void setTopLevelProperties();
    void setFixedSize(CGSize pixels);
    template <typename T> void setProperty(xcb_atom_t property, xcb_atom_t type, std::span<const T> values);
    /// Where the content's top left lies on the screen, in pixels.
    std::pair<int, int> rootOrigin() const;

    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleCrossing(const xcb_enter_notify_event_t& event);
    void handleKey(const xcb_key_press_event_t& event);
    void handleFocus(const xcb_focus_in_event_t& event);
    void handleExpose(const xcb_expose_event_t& event);
    void handleConfigure(const xcb_configure_notify_event_t& event);
    void handleMessage(const xcb_client_message_event_t& event);
    void scroll(const xcb_button_press_event_t& event);
    /// @return false when this window is gone afterwards
    bool noticeMissedRelease(std::uint16_t state);
    template <typename Event> void sendMouse(NSEventType type, const Event& event, int clickCount);
    NSPoint pointAt(std::int16_t x, std::int16_t y) const { return {x / mScale, y / mScale}; }

    const std::shared_ptr<X11Server> mServer;
    NSWindowBackendClient& mClient;
    CGFloat mScale;
    bool mFollowsDesktop = false;
    NSSize mPoints;
    const xcb_window_t mParent;
    xcb_window_t mId = XCB_NONE; // 0 once the native window is gone
    CGSize mPixels;
    std::optional<X11Surface> mSurface; // from the first pixels on
    NSClickCounter mClicks;
    int mClickCount = 1;        // a release may end a press that another window saw
    std::uint16_t mPressed = 0; // masks of the buttons that went down here
    bool mTakesFocus = true, mHasFocus = false;
    std::optional<NSCursorShape> mCursor;
    std::shared_ptr<int> mAlive = std::make_shared<int>(); // watched by calls that go on after one to the client
};
