#include "X11/X11Window.h"

#include "Foundation/NSLog.h"

#include <cstring>

#include <unistd.h>

namespace {

constexpr std::uint32_t kEvents = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_BUTTON_PRESS |
                                  XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION |
                                  XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_EXPOSURE |
                                  XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;
constexpr CGFloat kMostPixels = 32767; // a side; what a bitmap can have
constexpr std::uint32_t kInstanceAndClass = sizeof "tonaro\0Tonaro";

std::int16_t Coordinate(CGFloat value)
{
    return static_cast<std::int16_t>(std::clamp(std::round(value), -32768.0, 32767.0));
}

constexpr CGFloat kLeastScale = 0.25, kMostScale = 8;

CGSize PixelsOf(NSSize points, CGFloat scale)
{
    const CGSize pixels = NSPixelSize(points, scale);
    return {std::min(pixels.width, kMostPixels), std::min(pixels.height, kMostPixels)};
}

} // namespace

std::unique_ptr<X11Window> X11Window::create(std::shared_ptr<X11Server> server, NSWindowBackendClient& client,
                                             const NSBackendWindowOptions& options)
{
    const CGFloat scale = options.scale > 0 ? options.scale : server->connection().desktopScale();
    const auto parent = static_cast<xcb_window_t>(options.parent);
    auto window = std::unique_ptr<X11Window>(new X11Window(std::move(server), client, scale, parent));
    const NSPoint origin{options.origin.x * scale, options.origin.y * scale};
    if (!window->createNative({origin, options.contentSize, false})) return nullptr;
    window->mFollowsDesktop = options.scale <= 0 && parent == XCB_NONE;
    window->setTopLevelProperties();
    return window;
}

X11Window::X11Window(std::shared_ptr<X11Server> server, NSWindowBackendClient& client, CGFloat scale,
                     xcb_window_t parent)
    : mServer(std::move(server)), mClient(client), mScale(std::clamp(scale, kLeastScale, kMostScale)), mParent(parent)
{
}

X11Window::~X11Window()
{
    if (!mId) return;
    mServer->remove(mId);
    mSurface.reset();
    xcb_destroy_window(connection().get(), mId);
    connection().flush();
}

bool X11Window::createNative(const Place& place)
{
    auto* c = connection().get();
    mPoints = place.points;
    mPixels = PixelsOf(mPoints, mScale);
    const xcb_window_t id = xcb_generate_id(c);
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_NONE,    0,       XCB_GRAVITY_NORTH_WEST,
                                    place.overridesRedirect, kEvents, connection().colormap()};
    // depth and visual are named since a parent may have others; the wait lets another program use the id at once
    const int error = connection().check(xcb_create_window_checked(
        c, connection().depth(), id, mParent ? mParent : connection().screen().root, Coordinate(place.origin.x),
        Coordinate(place.origin.y), static_cast<std::uint16_t>(mPixels.width),
        static_cast<std::uint16_t>(mPixels.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, connection().visual(),
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP,
        values));
    if (error) {
        NSLog("the X server refuses a window in 0x%x: error %d", mParent, error);
        return false;
    }
    mId = id;
    mTakesFocus = !place.overridesRedirect;
    mServer->add(mId, *this);
    if (mParent) mServer->watchParent(mParent);
    return true;
}

template <typename T> void X11Window::setProperty(xcb_atom_t property, xcb_atom_t type, std::span<const T> values)
{
    xcb_change_property(connection().get(), XCB_PROP_MODE_REPLACE, mId, property, type, sizeof(T) * 8,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void X11Window::setTopLevelProperties()
{
    auto& c = connection();
    const xcb_atom_t protocols[] = {c.atom(X11Atom::WM_DELETE_WINDOW), c.atom(X11Atom::_NET_WM_PING)};
    setProperty<xcb_atom_t>(c.atom(X11Atom::WM_PROTOCOLS), XCB_ATOM_ATOM, protocols);
    setProperty<char>(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, {"tonaro\0Tonaro", kInstanceAndClass});
    const std::uint32_t process[] = {static_cast<std::uint32_t>(getpid())};
    setProperty<std::uint32_t>(c.atom(X11Atom::_NET_WM_PID), XCB_ATOM_CARDINAL, process);
    char host[256] = {};
    if (gethostname(host, sizeof host - 1) == 0)
        setProperty<char>(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, {host, std::strlen(host)});
    constexpr std::uint32_t kInputHint = 1;
    const std::uint32_t hints[9] = {kInputHint, 1};
    setProperty<std::uint32_t>(XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints);
    setWindowType(X11Atom::_NET_WM_WINDOW_TYPE_NORMAL);
    setFixedSize(mPixels);
}

void X11Window::setWindowType(X11Atom type)
{
    const xcb_atom_t types[] = {connection().atom(type)};
    setProperty<xcb_atom_t>(connection().atom(X11Atom::_NET_WM_WINDOW_TYPE), XCB_ATOM_ATOM, types);
}

void X11Window::setFixedSize(CGSize pixels)
{
    constexpr std::uint32_t kLeastAndMostSize = 1U << 4 | 1U << 5;
    const auto width = static_cast<std::uint32_t>(pixels.width), height = static_cast<std::uint32_t>(pixels.height);
    const std::uint32_t hints[18] = {kLeastAndMostSize, 0, 0, 0, 0, width, height, width, height};
    setProperty<std::uint32_t>(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
}

void X11Window::show()
{
    if (!mId) return;
    xcb_map_window(connection().get(), mId);
    connection().flush();
}

void X11Window::hide()
{
    if (!mId) return;
    xcb_unmap_window(connection().get(), mId);
    connection().flush();
}

void X11Window::setTitle(const NSString* title)
{
    if (!mId) return;
    const std::string text = title ? title->utf8() : std::string();
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
    const xcb_atom_t utf8 = connection().atom(X11Atom::UTF8_STRING);
    setProperty<char>(XCB_ATOM_WM_NAME, isAscii ? xcb_atom_t{XCB_ATOM_STRING} : utf8, text);
    setProperty<char>(connection().atom(X11Atom::_NET_WM_NAME), utf8, text);
    connection().flush();
}

void X11Window::setContentSize(NSSize points)
{
    mPoints = points;
    const CGSize pixels = PixelsOf(points, mScale);
    if (!mId || pixels == mPixels) return;
    mPixels = pixels;
    setFixedSize(pixels);
    const std::uint32_t values[] = {static_cast<std::uint32_t>(pixels.width),
                                    static_cast<std::uint32_t>(pixels.height)};
    xcb_configure_window(connection().get(), mId, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    connection().flush();
}

void X11Window::desktopScaleChanged(CGFloat scale)
{
    scale = std::clamp(scale, kLeastScale, kMostScale);
    if (!mId || !mFollowsDesktop || scale == mScale) return;
    mScale = scale;
    setContentSize(mPoints);
    mClient.backendResized(mPoints, scale); // last: the window may be gone afterwards
}

void X11Window::present(CGContextRef bitmap, std::span<const CGRect> pixelRects)
{
    if (!mId) return;
    if (!mSurface) mSurface.emplace(connection(), mId);
    mSurface->present(bitmap, pixelRects);
}

void X11Window::presented(xcb_shm_seg_t segment, std::uint32_t request)
{
    if (mSurface && mSurface->segment() == segment) mSurface->completed(request);
}

void X11Window::setCursor(NSCursorShape shape)
{
    if (!mId || mCursor == shape) return;
    mCursor = shape;
    const std::uint32_t values[] = {mServer->cursor(shape)};
    xcb_change_window_attributes(connection().get(), mId, XCB_CW_CURSOR, values);
    connection().flush();
}

void X11Window::takeFocus()
{
    if (!mId || !mTakesFocus) return;
    xcb_set_input_focus(connection().get(), XCB_INPUT_FOCUS_PARENT, mId, connection().lastTime());
    connection().flush();
}

std::pair<int, int> X11Window::rootOrigin() const
{
    const auto origin = connection().reply<xcb_translate_coordinates_reply>(
        xcb_translate_coordinates(connection().get(), mId, connection().screen().root, 0, 0));
    return origin ? std::pair<int, int>{origin->dst_x, origin->dst_y} : std::pair<int, int>{0, 0};
}

NSRect X11Window::screenFrame() const
{
    const auto [x, y] = rootOrigin();
    const xcb_screen_t& screen = connection().screen();
    return {{-x / mScale, -y / mScale}, {screen.width_in_pixels / mScale, screen.height_in_pixels / mScale}};
}

void X11Window::destroyed()
{
    if (!mId) return;
    mServer->remove(mId);
    mSurface.reset();
    mId = XCB_NONE;
    mClient.backendDestroyed();
}

void X11Window::pointerLost()
{
    if (std::exchange(mPressed, std::uint16_t{0})) mClient.backendGrabLost();
}
