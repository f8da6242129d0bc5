#pragma once

/// A menu's window: no window manager touches it, and while it is shown it holds pointer and keyboard.

#include "X11/X11Window.h"

class X11PopUp final : public X11Window {
public:
    /// @param frame  points, from the top left of `parent`'s content. Null when the server refuses
    static std::unique_ptr<X11PopUp> create(std::shared_ptr<X11Server> server, NSWindowBackendClient& client,
                                            const X11Window& parent, NSRect frame);
    ~X11PopUp() override;

    void show() override;
    void hide() override;
    void pointerLost() override;

private:
    X11PopUp(std::shared_ptr<X11Server> server, NSWindowBackendClient& client, CGFloat scale)
        : X11Window(std::move(server), client, scale, XCB_NONE)
    {
    }
    void keyboardUngrabbed() override;
    void grab();
    bool grabPointer();
    bool grabKeyboard();
    void stopTrying();

    bool mIsShown = false, mHoldsPointer = false, mHoldsKeyboard = false;
    int mTriesLeft = 0;
    RetainPtr<CFRunLoopTimer> mTimer; // until the next try
};
