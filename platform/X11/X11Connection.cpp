#include "X11/X11Connection.h"

#include "CoreFoundation/CFRunLoop.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include <sys/socket.h>

static_assert(std::endian::native == std::endian::little, "pixels are written as little-endian words");

namespace {

constexpr std::array<const char*, static_cast<std::size_t>(X11Atom::count)> kAtomNames = {
    "WM_PROTOCOLS",
    "WM_DELETE_WINDOW",
    "_NET_WM_PING",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "UTF8_STRING",
    "CLIPBOARD",
    "TARGETS",
    "TIMESTAMP",
    "INCR",
    "TONARO_CLIPBOARD",
    "MANAGER",
    "_XSETTINGS_SETTINGS",
};

constexpr std::uint32_t kWordsOfResources = 1U << 18; // 1 MB

const char* TextOfConnectionError(int code)
{
    switch (code) {
    case XCB_CONN_ERROR:
        return "no X server answers there";
    case XCB_CONN_CLOSED_EXT_NOTSUPPORTED:
        return "the X server lacks an extension";
    case XCB_CONN_CLOSED_PARSE_ERR:
        return "no such display name, or DISPLAY is not set";
    case XCB_CONN_CLOSED_INVALID_SCREEN:
        return "the X server has no such screen";
    default:
        return "the connection failed";
    }
}

const xcb_screen_t* ScreenAt(const xcb_setup_t* setup, int number)
{
    auto iterator = xcb_setup_roots_iterator(setup);
    for (; iterator.rem > 0 && number > 0; --number) xcb_screen_next(&iterator);
    return iterator.rem > 0 ? iterator.data : nullptr;
}

bool IsUsable(const xcb_visualtype_t& visual)
{
    return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xFF0000 && visual.green_mask == 0xFF00 &&
           visual.blue_mask == 0xFF;
}

bool HasFourBytesAPixel(const xcb_setup_t* setup, std::uint8_t depth)
{
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0; xcb_format_next(&format))
        if (format.data->depth == depth) return format.data->bits_per_pixel == 32;
    return false;
}

// Answers the root's visual where it can be used, else the first that can.
std::pair<std::uint8_t, xcb_visualid_t> FindVisual(const xcb_setup_t* setup, const xcb_screen_t& screen)
{
    std::pair<std::uint8_t, xcb_visualid_t> found{};
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        if (depth.data->depth < 24 || !HasFourBytesAPixel(setup, depth.data->depth)) continue;
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
            if (!IsUsable(*visual.data)) continue;
            const bool isRoot = visual.data->visual_id == screen.root_visual;
            if (isRoot || found.second == 0) found = {depth.data->depth, visual.data->visual_id};
            if (isRoot) return found;
        }
    }
    return found;
}

// Shared memory and passed descriptors only work on the same machine.
bool IsLocal(int descriptor)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    return getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0 && address.ss_family == AF_UNIX;
}

double ScaleOfResources(std::string_view resources)
{
    constexpr std::string_view kKey = "Xft.dpi:";
    std::size_t line = resources.find(kKey);
    while (line != std::string_view::npos && line != 0 && resources[line - 1] != '\n')
        line = resources.find(kKey, line + 1);
    if (line == std::string_view::npos) return 1.0;
    resources.remove_prefix(line + kKey.size());
    resources.remove_prefix(std::min(resources.find_first_not_of(" \t"), resources.size()));
    double dpi = 96.0;
    if (std::from_chars(resources.data(), resources.data() + resources.size(), dpi).ec != std::errc()) return 1.0;
    const double quarters = std::round(dpi / 96.0 * 4.0);
    return quarters > 4.0 ? std::min(quarters, 16.0) / 4.0 : 1.0;
}

} // namespace

std::unique_ptr<X11Connection> X11Connection::open(const char* displayName, std::string* error)
{
    std::string ignored;
    if (!error) error = &ignored;
    auto connection = std::unique_ptr<X11Connection>(new X11Connection);
    int& screen = connection->mScreenNumber;
    connection->mConnection.reset(xcb_connect(displayName, &screen));
    const char* shown = displayName ? displayName : std::getenv("DISPLAY");
    if (const int code = xcb_connection_has_error(connection->get())) {
        *error = std::string("display \"") + (shown ? shown : "") + "\": " + TextOfConnectionError(code);
        return nullptr;
    }
    connection->mScreen = ScreenAt(xcb_get_setup(connection->get()), screen);
    if (!connection->chooseVisual(error)) return nullptr;
    connection->internAtoms();
    connection->querySharedMemory();
    return connection;
}

bool X11Connection::chooseVisual(std::string* error)
{
    const xcb_setup_t* setup = xcb_get_setup(get());
    if (!mScreen || setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        *error = mScreen ? "the X server wants big-endian pixels" : "the X server has no such screen";
        return false;
    }
    std::tie(mDepth, mVisual) = FindVisual(setup, screen());
    if (mVisual == 0) {
        *error = "the X server has no 24-bit true-colour visual (the screen has " +
                 std::to_string(screen().root_depth) + " bits)";
        return false;
    }
    mColormap = screen().default_colormap;
    if (mVisual != screen().root_visual) {
        mColormap = xcb_generate_id(get());
        xcb_create_colormap(get(), XCB_COLORMAP_ALLOC_NONE, mColormap, screen().root, mVisual);
    }
    return true;
}

void X11Connection::internAtoms()
{
    std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> cookies{};
    for (std::size_t i = 0; i < kAtomNames.size(); ++i)
        cookies[i] = xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    for (std::size_t i = 0; i < kAtomNames.size(); ++i)
        if (const auto answer = reply<xcb_intern_atom_reply>(cookies[i])) mAtoms[i] = answer->atom;
}

xcb_atom_t X11Connection::internAtom(const std::string& name)
{
    const auto answer =
        reply<xcb_intern_atom_reply>(xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str()));
    return answer ? answer->atom : xcb_atom_t{XCB_NONE};
}

void X11Connection::querySharedMemory()
{
    const auto* extension = xcb_get_extension_data(get(), &xcb_shm_id);
    if (!extension || !extension->present || !IsLocal(xcb_get_file_descriptor(get()))) return;
    const auto version = reply<xcb_shm_query_version_reply>(xcb_shm_query_version(get()));
    // 1.2 takes descriptors, which unlike segment numbers can't be mistaken and end with the process
    mHasSharedMemory = version && (version->major_version > 1 || version->minor_version >= 2);
    mFirstShmEvent = extension->first_event;
}

double X11Connection::desktopScale()
{
    const auto resources = reply<xcb_get_property_reply>(
        xcb_get_property(get(), 0, screen().root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, kWordsOfResources));
    if (!resources) return 1.0;
    return ScaleOfResources({static_cast<const char*>(xcb_get_property_value(resources.get())),
                             static_cast<std::size_t>(xcb_get_property_value_length(resources.get()))});
}

int X11Connection::check(xcb_void_cookie_t cookie)
{
    const X11Block<xcb_generic_error_t> error(xcb_request_check(get(), cookie));
    keepQueuedEvents();
    if (error) return error->error_code;
    return isLost() ? XCB_IMPLEMENTATION : 0;
}

void X11Connection::synchronize() { reply<xcb_get_input_focus_reply>(xcb_get_input_focus(get())); }

// Events that arrived with a reply no longer make the descriptor readable.
void X11Connection::keepQueuedEvents()
{
    takeQueuedEvents();
    if (!mEvents.empty()) CFRunLoopWakeUp(CFRunLoopGetCurrent());
}

void X11Connection::takeQueuedEvents()
{
    while (X11Event event{xcb_poll_for_queued_event(get())}) mEvents.push_back(std::move(event));
}

void X11Connection::readEvents()
{
    // a read takes up to 128 events: only where so many came can there be more
    constexpr std::size_t kManyEvents = 64;
    std::size_t before = 0;
    do {
        before = mEvents.size();
        if (X11Event event{xcb_poll_for_event(get())}) mEvents.push_back(std::move(event));
        takeQueuedEvents();
    } while (mEvents.size() - before >= kManyEvents);
}

X11Event X11Connection::nextEvent()
{
    while (!mEvents.empty()) {
        X11Event event = std::move(mEvents.front());
        mEvents.pop_front();
        if (!isFollowedByNewerMove(*event)) return event;
    }
    return nullptr;
}

bool X11Connection::isFollowedByNewerMove(const xcb_generic_event_t& event) const
{
    if (mEvents.empty() || X11TypeOf(event) != XCB_MOTION_NOTIFY || X11TypeOf(*mEvents.front()) != XCB_MOTION_NOTIFY)
        return false;
    const auto& move = X11EventAs<xcb_motion_notify_event_t>(event);
    const auto& next = X11EventAs<xcb_motion_notify_event_t>(*mEvents.front());
    return move.event == next.event && move.state == next.state;
}

double X11Connection::secondsAt(xcb_timestamp_t time)
{
    mMilliseconds += static_cast<std::int32_t>(time - mLastTime); // the server's 32 bits wrap after 49 days
    mLastTime = time;
    return static_cast<double>(mMilliseconds) / 1000.0;
}
