#include "X11/X11PopUp.h"

namespace {

// A window manager or host may still hold the press that opens the menu.
constexpr int kTries = 15;
constexpr CFTimeInterval kPauseBetweenTries = 0.02;

} // namespace

std::unique_ptr<X11PopUp> X11PopUp::create(std::shared_ptr<X11Server> server, NSWindowBackendClient& client,
                                           const X11Window& parent, NSRect frame)
{
    const CGFloat scale = parent.backingScale();
    const auto [x, y] = parent.rootOrigin();
    auto popUp = std::unique_ptr<X11PopUp>(new X11PopUp(std::move(server), client, scale));
    const Place place{{x + frame.origin.x * scale, y + frame.origin.y * scale}, frame.size, true};
    if (!popUp->createNative(place)) return nullptr;
    popUp->setWindowType(X11Atom::_NET_WM_WINDOW_TYPE_POPUP_MENU);
    return popUp;
}

X11PopUp::~X11PopUp() { stopTrying(); }

void X11PopUp::show()
{
    if (!id()) return;
    const std::uint32_t above[] = {XCB_STACK_MODE_ABOVE};
    xcb_configure_window(connection().get(), id(), XCB_CONFIG_WINDOW_STACK_MODE, above);
    X11Window::show();
    mIsShown = true;
    mTriesLeft = kTries;
    grab();
}

void X11PopUp::hide()
{
    stopTrying();
    mIsShown = false;
    if (std::exchange(mHoldsKeyboard, false)) xcb_ungrab_keyboard(connection().get(), XCB_CURRENT_TIME);
    if (std::exchange(mHoldsPointer, false)) xcb_ungrab_pointer(connection().get(), XCB_CURRENT_TIME);
    X11Window::hide();
}

void X11PopUp::pointerLost()
{
    stopTrying();
    mHoldsPointer = mHoldsKeyboard = false;
    if (std::exchange(mIsShown, false)) client().backendGrabLost();
}

void X11PopUp::keyboardUngrabbed()
{
    if (mHoldsKeyboard) pointerLost();
}

void X11PopUp::grab()
{
    if (!id()) return;
    mHoldsPointer = mHoldsPointer || grabPointer();
    mHoldsKeyboard = mHoldsKeyboard || grabKeyboard();
    if (mHoldsPointer && mHoldsKeyboard) return stopTrying();
    if (--mTriesLeft < 0) return pointerLost();
    mTimer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kPauseBetweenTries, 0.0, [this] { grab(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer, kCFRunLoopCommonModes);
}

// Presses anywhere come to this window, so that one outside can close the menu.
bool X11PopUp::grabPointer()
{
    constexpr std::uint16_t kPointerEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                             XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
                                             XCB_EVENT_MASK_LEAVE_WINDOW;
    const auto answer = connection().reply<xcb_grab_pointer_reply>(
        xcb_grab_pointer(connection().get(), 0, id(), kPointerEvents, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                         XCB_NONE, XCB_NONE, XCB_CURRENT_TIME));
    return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11PopUp::grabKeyboard()
{
    const auto answer = connection().reply<xcb_grab_keyboard_reply>(
        xcb_grab_keyboard(connection().get(), 0, id(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11PopUp::stopTrying() { CFRunLoopTimerInvalidate(mTimer); }
