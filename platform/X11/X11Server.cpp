#include "X11/X11Server.h"

#include "Foundation/NSLog.h"
#include "X11/X11Window.h"

namespace {

/// Glyphs of the server's cursor font; the mask of a shape is the next one.
constexpr struct {
    NSCursorShape shape;
    std::uint16_t glyph;
} kCursorGlyphs[] = {
    {NSCursorShape::arrow, 68},
    {NSCursorShape::text, 152},
    {NSCursorShape::hand, 60},
};

/// The window that an event is about; 0 for events of no window.
xcb_window_t WindowOf(const xcb_generic_event_t& event)
{
    switch (X11TypeOf(event)) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
    case XCB_MOTION_NOTIFY:
        return X11EventAs<xcb_motion_notify_event_t>(event).event;
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return X11EventAs<xcb_enter_notify_event_t>(event).event;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        return X11EventAs<xcb_focus_in_event_t>(event).event;
    case XCB_EXPOSE:
        return X11EventAs<xcb_expose_event_t>(event).window;
    case XCB_UNMAP_NOTIFY:
        return X11EventAs<xcb_unmap_notify_event_t>(event).event;
    case XCB_DESTROY_NOTIFY:
        return X11EventAs<xcb_destroy_notify_event_t>(event).event;
    case XCB_CONFIGURE_NOTIFY:
        return X11EventAs<xcb_configure_notify_event_t>(event).event;
    case XCB_CLIENT_MESSAGE:
        return X11EventAs<xcb_client_message_event_t>(event).window;
    default:
        return XCB_NONE;
    }
}

} // namespace

std::shared_ptr<X11Server> X11Server::connect(const char* displayName, std::string* error)
{
    auto server = std::shared_ptr<X11Server>(new X11Server);
    server->mConnection = X11Connection::open(displayName, error);
    if (!server->mConnection) return nullptr;
    server->mKeyboard = X11Keyboard::open(*server->mConnection, error);
    if (!server->mKeyboard) return nullptr;
    server->mClipboard = std::make_unique<X11Clipboard>(*server->mConnection);
    server->mSettings = std::make_unique<X11Settings>(*server->mConnection);
    server->attachToRunLoop();
    return server;
}

X11Server::~X11Server() { detachFromRunLoop(); }

void X11Server::attachToRunLoop()
{
    const auto handle = [weak = weak_from_this()](void (X11Connection::*take)()) {
        return [weak, take] {
            if (const auto server = weak.lock()) server->handleEvents(take);
        };
    };
    mDescriptor =
        CFFileDescriptorCreate(xcb_get_file_descriptor(mConnection->get()), handle(&X11Connection::readEvents));
    CFRunLoopAddFileDescriptor(CFRunLoopGetCurrent(), mDescriptor, kCFRunLoopCommonModes);
    // what was read during the turn, with an answer for instance, must not wait for the next event
    mObserver = CFRunLoopAddBeforeWaiting(CFRunLoopGetCurrent(), handle(&X11Connection::takeQueuedEvents));
}

void X11Server::detachFromRunLoop()
{
    CFFileDescriptorInvalidate(mDescriptor);
    CFRunLoopRemoveBeforeWaiting(CFRunLoopGetCurrent(), std::exchange(mObserver, 0));
}

xcb_cursor_t X11Server::cursor(NSCursorShape shape)
{
    xcb_cursor_t& cursor = mCursors[shape];
    if (cursor) return cursor;
    auto* c = mConnection->get();
    const xcb_font_t font = xcb_generate_id(c);
    cursor = xcb_generate_id(c);
    xcb_open_font(c, font, 6, "cursor");
    for (const auto& row : kCursorGlyphs)
        if (row.shape == shape)
            xcb_create_glyph_cursor(c, cursor, font, font, row.glyph, static_cast<std::uint16_t>(row.glyph + 1), 0, 0,
                                    0, 0xFFFF, 0xFFFF, 0xFFFF);
    xcb_close_font(c, font);
    return cursor;
}

// The server only tells that it hides a window, not those inside.
void X11Server::watchParent(xcb_window_t parent)
{
    if (window(parent)) return; // one of ours hears enough
    const std::uint32_t events[] = {XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_change_window_attributes(mConnection->get(), parent, XCB_CW_EVENT_MASK, events);
    mConnection->flush();
}

// A callback may end the display, throw, or run the loop again: events are taken one by one.
void X11Server::handleEvents(void (X11Connection::*take)())
{
    const std::shared_ptr<X11Server> keep = shared_from_this();
    struct WakeForTheRest {
        X11Connection& connection;
        ~WakeForTheRest() { connection.keepQueuedEvents(); }
    };
    {
        const WakeForTheRest wake{*mConnection};
        (*mConnection.*take)();
        while (const X11Event event = mConnection->nextEvent()) handle(*event);
    }
    mConnection->flush();
    if (mConnection->isLost() && mObserver) connectionLost();
}

void X11Server::handle(const xcb_generic_event_t& event)
{
    const unsigned type = X11TypeOf(event);
    if (type == 0) return; // an error: windows of other programs may vanish at any time
    if (mKeyboard->handle(event) || mSettings->handle(event) || mClipboard->handle(event)) return;
    if (mConnection->firstShmEvent() && type == mConnection->firstShmEvent() + unsigned{XCB_SHM_COMPLETION}) {
        const auto& done = X11EventAs<xcb_shm_completion_event_t>(event);
        if (X11Window* shown = window(done.drawable)) shown->presented(done.shmseg, event.full_sequence);
        return;
    }
    if (type == XCB_PROPERTY_NOTIFY) return handleProperty(X11EventAs<xcb_property_notify_event_t>(event));
    const xcb_window_t id = WindowOf(event);
    if (X11Window* found = window(id))
        found->handle(event);
    else if (type == XCB_UNMAP_NOTIFY)
        handleParentHidden(id);
}

void X11Server::handleProperty(const xcb_property_notify_event_t& event)
{
    if (event.window != mConnection->screen().root || event.atom != XCB_ATOM_RESOURCE_MANAGER) return;
    const double scale = mConnection->desktopScale();
    for (const xcb_window_t id : windowIds())
        if (X11Window* found = window(id)) found->desktopScaleChanged(scale);
}

void X11Server::handleParentHidden(xcb_window_t parent)
{
    for (const xcb_window_t id : windowIds())
        if (X11Window* child = window(id); child && child->parent() == parent) child->pointerLost();
}

void X11Server::connectionLost()
{
    detachFromRunLoop();
    NSLog("the connection to the X server is lost");
    mClipboard->connectionLost();
    for (const xcb_window_t id : windowIds())
        if (X11Window* found = window(id)) found->destroyed();
}

std::vector<xcb_window_t> X11Server::windowIds() const
{
    std::vector<xcb_window_t> ids;
    ids.reserve(mWindows.size());
    for (const auto& entry : mWindows) ids.push_back(entry.first);
    return ids;
}

X11Window* X11Server::window(xcb_window_t id) const
{
    const auto found = mWindows.find(id);
    return found != mWindows.end() ? found->second : nullptr;
}
