#include "Screen.h"

#include "Process.h"
#include "Traffic.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <xcb/res.h>
#include <xcb/xtest.h>

namespace {

constexpr std::uint32_t kColour = 0x336699;
constexpr int kStrips = 16; // rows of an editor that are looked at

template <typename T> struct Freed {
    T* pointer;
    explicit Freed(T* answer) : pointer(answer) {}
    ~Freed() { std::free(pointer); }
    Freed(const Freed&) = delete;
    Freed& operator=(const Freed&) = delete;
    T* operator->() const { return pointer; }
    explicit operator bool() const { return pointer != nullptr; }
};

} // namespace

Screen::Connection Screen::connect()
{
    Connection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get())) throw std::runtime_error("there is no display");
    LeaveOutOfTraffic(xcb_get_file_descriptor(connection.get()));
    return connection;
}

Screen::Screen() : mConnection(connect()), mWatching(connect())
{
    mScreen = xcb_setup_roots_iterator(xcb_get_setup(mConnection.get())).data;
    const auto* damage = xcb_get_extension_data(mWatching.get(), &xcb_damage_id);
    if (!damage || !damage->present) throw std::runtime_error("the display doesn't tell what is drawn");
    mDamageEvent = damage->first_event;
    Freed(xcb_damage_query_version_reply(mWatching.get(), xcb_damage_query_version(mWatching.get(), 1, 1), nullptr));
    mThread = std::thread([this] { watch(); });
}

Screen::~Screen()
{
    // an event of our own ends the thread
    xcb_client_message_event_t end{};
    end.response_type = XCB_CLIENT_MESSAGE;
    end.format = 32;
    const xcb_window_t window = xcb_generate_id(mWatching.get());
    xcb_create_window(mWatching.get(), XCB_COPY_FROM_PARENT, window, mScreen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    end.window = window;
    xcb_send_event(mWatching.get(), 0, window, 0, reinterpret_cast<const char*>(&end));
    xcb_flush(mWatching.get());
    mThread.join();
}

xcb_window_t Screen::makeWindow(int width, int height)
{
    auto* c = mConnection.get();
    const xcb_window_t window = xcb_generate_id(c);
    const std::uint32_t values[] = {kColour, 1};
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, mScreen->root, 0, 0, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(c, window);
    sync();
    xcb_damage_create(mWatching.get(), xcb_generate_id(mWatching.get()), window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(mWatching.get());
    return window;
}

void Screen::destroyWindow(xcb_window_t window)
{
    xcb_destroy_window(mConnection.get(), window);
    sync();
}

DrawnRect Screen::editorIn(xcb_window_t window)
{
    auto* c = mConnection.get();
    const Freed tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree || xcb_query_tree_children_length(tree.pointer) == 0) return {};
    const xcb_window_t child = *xcb_query_tree_children(tree.pointer);
    const Freed place(xcb_get_geometry_reply(c, xcb_get_geometry(c, child), nullptr));
    return place ? DrawnRect{place->x, place->y, place->width, place->height, 0} : DrawnRect{};
}

bool Screen::hasPixels(xcb_window_t window)
{
    auto* c = mConnection.get();
    const DrawnRect editor = editorIn(window);
    if (editor.width < 2 || editor.height < kStrips) return false;
    std::vector<xcb_get_image_cookie_t> rows;
    for (int i = 0; i < kStrips; ++i)
        rows.push_back(xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(editor.x),
                                     static_cast<std::int16_t>(editor.y + editor.height * i / kStrips),
                                     static_cast<std::uint16_t>(editor.width), 1, ~0U));
    std::uint32_t first = 0;
    bool hasFirst = false, differs = false;
    for (const auto& row : rows) {
        const Freed image(xcb_get_image_reply(c, row, nullptr));
        if (!image) continue;
        const std::uint8_t* bytes = xcb_get_image_data(image.pointer);
        for (int i = 0; i + 4 <= xcb_get_image_data_length(image.pointer); i += 4) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, bytes + i, 3);
            if (!hasFirst) first = pixel;
            hasFirst = true;
            differs |= pixel != first;
        }
    }
    return differs;
}

void Screen::watch()
{
    for (;;) {
        const Freed event(xcb_wait_for_event(mWatching.get()));
        if (!event || (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) return;
        if ((event->response_type & 0x7F) == mDamageEvent)
            notice(*reinterpret_cast<xcb_damage_notify_event_t*>(event.pointer));
    }
}

void Screen::notice(const xcb_damage_notify_event_t& event)
{
    const double now = Now();
    const std::lock_guard lock(mMutex);
    mDrawn.push_back({event.area.x, event.area.y, event.area.width, event.area.height, now});
}

std::vector<DrawnRect> Screen::takeDrawn()
{
    const std::lock_guard lock(mMutex);
    return std::exchange(mDrawn, {});
}

bool Screen::wasDrawn()
{
    const std::lock_guard lock(mMutex);
    return !mDrawn.empty();
}

double Screen::watchingSeconds() const { return ThreadSeconds(const_cast<std::thread&>(mThread).native_handle()); }

void Screen::movePointer(Point place)
{
    xcb_test_fake_input(mConnection.get(), XCB_MOTION_NOTIFY, 0, 0, mScreen->root, static_cast<std::int16_t>(place.x),
                        static_cast<std::int16_t>(place.y), 0);
    sync();
}

void Screen::turnWheel(bool up)
{
    for (const std::uint8_t type : {std::uint8_t{XCB_BUTTON_PRESS}, std::uint8_t{XCB_BUTTON_RELEASE}})
        xcb_test_fake_input(mConnection.get(), type, up ? 4 : 5, 0, mScreen->root, 0, 0, 0);
    xcb_flush(mConnection.get());
}

void Screen::sync()
{
    Freed(xcb_get_input_focus_reply(mConnection.get(), xcb_get_input_focus(mConnection.get()), nullptr));
}

std::uint64_t Screen::resourcesOfOthers()
{
    auto* c = mConnection.get();
    std::uint64_t total = 0;
    const Freed clients(xcb_res_query_clients_reply(c, xcb_res_query_clients(c), nullptr));
    if (!clients) throw std::runtime_error("the display doesn't tell what programs hold");
    const std::uint32_t own[] = {xcb_get_setup(c)->resource_id_base, xcb_get_setup(mWatching.get())->resource_id_base};
    for (auto client = xcb_res_query_clients_clients_iterator(clients.pointer); client.rem;
         xcb_res_client_next(&client)) {
        if (std::find(std::begin(own), std::end(own), client.data->resource_base) != std::end(own)) continue;
        const Freed held(xcb_res_query_client_resources_reply(
            c, xcb_res_query_client_resources(c, client.data->resource_base), nullptr));
        if (!held) continue;
        for (auto type = xcb_res_query_client_resources_types_iterator(held.pointer); type.rem;
             xcb_res_type_next(&type))
            total += type.data->count;
    }
    return total;
}
