// What arrives at a window. In every function here the call to the client is the last one, or the window's life is
// watched across it.
#include "X11/X11Window.h"

namespace {

enum : xcb_button_t { kLeft = 1, kRight = 3, kFirstWheel = 4, kLastWheel = 7 };

/// The steps of the wheel that stand behind buttons 4 to 7: up, down, left, right.
constexpr NSPoint kNotches[] = {{0, 1}, {0, -1}, {1, 0}, {-1, 0}};

struct ButtonFacts {
    xcb_button_t button;
    std::uint16_t mask;
    NSEventType down, up, dragged;
};
constexpr ButtonFacts kButtons[] = {
    {kLeft, XCB_BUTTON_MASK_1, NSLeftMouseDown, NSLeftMouseUp, NSLeftMouseDragged},
    {kRight, XCB_BUTTON_MASK_3, NSRightMouseDown, NSRightMouseUp, NSRightMouseDragged},
};

const ButtonFacts* FactsOf(xcb_button_t button)
{
    for (const ButtonFacts& facts : kButtons)
        if (facts.button == button) return &facts;
    return nullptr;
}

NSEventType TypeOfMove(std::uint16_t state)
{
    for (const ButtonFacts& facts : kButtons)
        if (state & facts.mask) return facts.dragged;
    return NSMouseMoved;
}

} // namespace

void X11Window::handle(const xcb_generic_event_t& event)
{
    switch (X11TypeOf(event)) {
    case XCB_BUTTON_PRESS:
        return handlePress(X11EventAs<xcb_button_press_event_t>(event));
    case XCB_BUTTON_RELEASE:
        return handleRelease(X11EventAs<xcb_button_release_event_t>(event));
    case XCB_MOTION_NOTIFY:
        return handleMotion(X11EventAs<xcb_motion_notify_event_t>(event));
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return handleCrossing(X11EventAs<xcb_enter_notify_event_t>(event));
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        return handleKey(X11EventAs<xcb_key_press_event_t>(event));
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        return handleFocus(X11EventAs<xcb_focus_in_event_t>(event));
    case XCB_EXPOSE:
        return handleExpose(X11EventAs<xcb_expose_event_t>(event));
    case XCB_CONFIGURE_NOTIFY:
        return handleConfigure(X11EventAs<xcb_configure_notify_event_t>(event));
    case XCB_CLIENT_MESSAGE:
        return handleMessage(X11EventAs<xcb_client_message_event_t>(event));
    case XCB_UNMAP_NOTIFY:
        return pointerLost();
    case XCB_DESTROY_NOTIFY:
        return destroyed();
    default:
        return;
    }
}

void X11Window::handlePress(const xcb_button_press_event_t& event)
{
    const double seconds = connection().secondsAt(event.time);
    if (event.detail >= kFirstWheel && event.detail <= kLastWheel) return scroll(event);
    const ButtonFacts* facts = FactsOf(event.detail);
    if (!facts || !noticeMissedRelease(event.state)) return;
    mPressed |= facts->mask;
    mClickCount = mClicks.press(event.detail, pointAt(event.event_x, event.event_y), seconds);
    sendMouse(facts->down, event, mClickCount);
}

void X11Window::handleRelease(const xcb_button_release_event_t& event)
{
    const ButtonFacts* facts = FactsOf(event.detail);
    if (!facts) return;
    mPressed = static_cast<std::uint16_t>(mPressed & ~facts->mask);
    sendMouse(facts->up, event, mClickCount);
}

void X11Window::handleMotion(const xcb_motion_notify_event_t& event)
{
    if (noticeMissedRelease(event.state)) sendMouse(TypeOfMove(event.state), event, 0);
}

void X11Window::handleCrossing(const xcb_enter_notify_event_t& event)
{
    const bool isEnter = (event.response_type & 0x7F) == XCB_ENTER_NOTIFY;
    if (event.mode == XCB_NOTIFY_MODE_GRAB && isEnter) return;
    if (!noticeMissedRelease(event.state)) return;
    if (isEnter)
        sendMouse(TypeOfMove(event.state), event, 0);
    else if (!mPressed)
        sendMouse(NSMouseExited, event, 0);
}

bool X11Window::noticeMissedRelease(std::uint16_t state)
{
    if ((mPressed & ~state) == 0) return true;
    const std::weak_ptr<int> alive = mAlive;
    pointerLost();
    return !alive.expired();
}

template <typename Event> void X11Window::sendMouse(NSEventType type, const Event& event, int clickCount)
{
    const auto sent = NSEvent::mouseEvent(type, pointAt(event.event_x, event.event_y), X11FlagsOfState(event.state),
                                          connection().secondsAt(event.time), nullptr, clickCount);
    mClient.backendEvent(*sent);
}

void X11Window::scroll(const xcb_button_press_event_t& event)
{
    const NSPoint notches = kNotches[event.detail - kFirstWheel];
    const auto sent = NSEvent::scrollEvent(pointAt(event.event_x, event.event_y), X11FlagsOfState(event.state),
                                           connection().secondsAt(event.time), nullptr, notches.x, notches.y);
    mClient.backendEvent(*sent);
}

void X11Window::handleKey(const xcb_key_press_event_t& event)
{
    const bool isPress = (event.response_type & 0x7F) == XCB_KEY_PRESS;
    const auto text = isPress ? mServer->keyboard().press(event) : mServer->keyboard().release(event);
    if (!text) return;
    const auto characters = NSString::string(text->characters);
    const auto plain = NSString::string(text->charactersIgnoringModifiers);
    const auto sent =
        NSEvent::keyEvent(isPress ? NSKeyDown : NSKeyUp, X11FlagsOfState(event.state) | text->flags,
                          connection().secondsAt(event.time), nullptr, characters, plain, text->isARepeat);
    mClient.backendEvent(*sent);
}

void X11Window::handleFocus(const xcb_focus_in_event_t& event)
{
    const bool focused = (event.response_type & 0x7F) == XCB_FOCUS_IN;
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) {
        // somebody's menu opened or closed: the focus stays where it is
        if (!focused && event.mode == XCB_NOTIFY_MODE_UNGRAB) keyboardUngrabbed();
        return;
    }
    const bool isOurs = event.detail == XCB_NOTIFY_DETAIL_ANCESTOR || event.detail == XCB_NOTIFY_DETAIL_NONLINEAR;
    if (!isOurs || mHasFocus == focused) return; // others are about the pointer's window, or windows in between
    mHasFocus = focused;
    if (!focused) mServer->keyboard().forgetPressedKeys();
    mClient.backendFocusChanged(focused);
}

void X11Window::handleExpose(const xcb_expose_event_t& event)
{
    const bool shown = mSurface && mSurface->showAgain(event.x, event.y, event.width, event.height);
    if (!shown && event.count == 0) mClient.backendExposed();
}

void X11Window::handleConfigure(const xcb_configure_notify_event_t& event)
{
    const CGSize pixels{static_cast<CGFloat>(event.width), static_cast<CGFloat>(event.height)};
    if (pixels == mPixels) return;
    mPixels = pixels;
    mPoints = {pixels.width / mScale, pixels.height / mScale};
    mClient.backendResized(mPoints, mScale);
}

void X11Window::handleMessage(const xcb_client_message_event_t& event)
{
    if (event.type != connection().atom(X11Atom::WM_PROTOCOLS) || event.format != 32) return;
    const xcb_atom_t protocol = event.data.data32[0];
    if (protocol == connection().atom(X11Atom::_NET_WM_PING)) {
        xcb_client_message_event_t answer = event;
        answer.window = connection().screen().root;
        xcb_send_event(connection().get(), 0, answer.window,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&answer));
    } else if (protocol == connection().atom(X11Atom::WM_DELETE_WINDOW)) {
        mClient.backendCloseRequested();
    }
}
