#include "ui/XClient.h"

#include "ui/Program.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>

#include <poll.h>
#include <unistd.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

template <typename T> std::unique_ptr<T, XFree> Own(T* reply) { return std::unique_ptr<T, XFree>(reply); }

constexpr useconds_t kSettling = 100000; // a tenth of a second

std::int16_t Rounded(double value) { return static_cast<std::int16_t>(value); }

} // namespace

XClient::XClient(const std::string& display) : mConnection(xcb_connect(display.c_str(), nullptr))
{
    if (xcb_connection_has_error(get())) throw std::runtime_error("no X server on " + display);
    mScreen = xcb_setup_roots_iterator(xcb_get_setup(get())).data;
    moveTo({mScreen->width_in_pixels - 1.0, mScreen->height_in_pixels - 1.0}); // over no window
}

xcb_atom_t XClient::atom(const char* name)
{
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const auto reply = Own(xcb_intern_atom_reply(get(), xcb_intern_atom(get(), 0, length, name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

void XClient::synchronize() { Own(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr)); }

bool XClient::waitUntil(const std::function<bool()>& isTrue, double seconds)
{
    const double until = SecondsNow() + seconds;
    while (!isTrue()) {
        if (SecondsNow() > until) return false;
        poll(nullptr, 0, 5); // other clients' windows send us nothing to wait for
    }
    return true;
}

// --- windows

xcb_window_t XClient::makeWindow(int x, int y, int width, int height)
{
    const xcb_window_t window = xcb_generate_id(get());
    xcb_create_window(get(), mScreen->root_depth, window, mScreen->root, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, mScreen->root_visual, 0,
                      nullptr);
    xcb_map_window(get(), window);
    synchronize();
    return window;
}

namespace {

std::vector<xcb_window_t> ShownWindows(xcb_connection_t* c, xcb_window_t root, bool overridesRedirect)
{
    std::vector<xcb_window_t> shown;
    const auto tree = Own(xcb_query_tree_reply(c, xcb_query_tree(c, root), nullptr));
    if (!tree) return shown;
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    for (const xcb_window_t child : children) {
        const auto facts = Own(xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, child), nullptr));
        if (facts && facts->map_state == XCB_MAP_STATE_VIEWABLE && (facts->override_redirect != 0) == overridesRedirect)
            shown.push_back(child);
    }
    return shown;
}

std::string NameOf(xcb_connection_t* c, xcb_window_t window)
{
    const auto name = Own(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 0, 256), nullptr));
    if (!name) return {};
    return {static_cast<const char*>(xcb_get_property_value(name.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(name.get()))};
}

} // namespace

std::vector<xcb_window_t> XClient::windowsNamed(const std::string& name)
{
    auto windows = ShownWindows(get(), mScreen->root, false);
    std::erase_if(windows, [&](xcb_window_t window) { return NameOf(get(), window) != name; });
    std::sort(windows.begin(), windows.end()); // ids of one program ascend
    return windows;
}

std::vector<xcb_window_t> XClient::menus() { return ShownWindows(get(), mScreen->root, true); }

xcb_window_t XClient::ownerOf(const char* selection)
{
    const auto reply =
        Own(xcb_get_selection_owner_reply(get(), xcb_get_selection_owner(get(), atom(selection)), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

bool XClient::isKeyboardGrabbed()
{
    const auto cookie =
        xcb_grab_keyboard(get(), 0, mScreen->root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto reply = Own(xcb_grab_keyboard_reply(get(), cookie, nullptr));
    if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS) {
        xcb_ungrab_keyboard(get(), XCB_CURRENT_TIME);
        synchronize();
        return false;
    }
    return true;
}

xcb_window_t XClient::waitForMenu()
{
    if (!waitUntil([this] { return !menus().empty(); })) return XCB_NONE;
    usleep(kSettling); // asking for the keyboard too early would take it away from the menu
    const bool came = waitUntil([this] { return !menus().empty() && isKeyboardGrabbed(); });
    const auto shown = menus();
    return came && !shown.empty() ? shown.back() : xcb_window_t{XCB_NONE};
}

CGRect XClient::frame(xcb_window_t window)
{
    const auto size = Own(xcb_get_geometry_reply(get(), xcb_get_geometry(get(), window), nullptr));
    const auto origin = Own(
        xcb_translate_coordinates_reply(get(), xcb_translate_coordinates(get(), window, mScreen->root, 0, 0), nullptr));
    if (!size || !origin) return {};
    return CGRectMake(origin->dst_x, origin->dst_y, size->width, size->height);
}

void XClient::moveWindow(xcb_window_t window, int x, int y)
{
    const std::int32_t place[] = {x, y};
    xcb_configure_window(get(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
    synchronize();
}

void XClient::focus(xcb_window_t window)
{
    xcb_set_input_focus(get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    synchronize();
}

void XClient::tell(xcb_window_t window, const char* protocol, std::array<std::uint32_t, 2> details)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom(protocol);
    message.data.data32[1] = details[0];
    message.data.data32[2] = details[1];
    xcb_send_event(get(), 0, window, 0, reinterpret_cast<const char*>(&message));
    synchronize();
}

std::vector<std::uint32_t> XClient::pixels(CGRect part, xcb_drawable_t drawable)
{
    const auto cookie =
        xcb_get_image(get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable ? drawable : mScreen->root, Rounded(part.origin.x),
                      Rounded(part.origin.y), static_cast<std::uint16_t>(part.size.width),
                      static_cast<std::uint16_t>(part.size.height), ~0U);
    const auto image = Own(xcb_get_image_reply(get(), cookie, nullptr));
    if (!image) return {};
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / 4);
    std::memcpy(pixels.data(), xcb_get_image_data(image.get()), pixels.size() * 4);
    for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
}

// --- the pointer

void XClient::fake(std::uint8_t type, std::uint8_t detail, int x, int y)
{
    xcb_test_fake_input(get(), type, detail, XCB_CURRENT_TIME, mScreen->root, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y), 0);
    synchronize();
}

void XClient::moveTo(CGPoint point)
{
    mPointer = point;
    fake(XCB_MOTION_NOTIFY, 0, Rounded(point.x), Rounded(point.y));
}

void XClient::glideTo(CGPoint point, int moves)
{
    const CGPoint start = mPointer;
    for (int i = 1; i <= moves; ++i)
        moveTo({start.x + (point.x - start.x) * i / moves, start.y + (point.y - start.y) * i / moves});
}

void XClient::press(Button button) { fake(XCB_BUTTON_PRESS, button); }
void XClient::release(Button button) { fake(XCB_BUTTON_RELEASE, button); }

void XClient::click(CGPoint point, Button button)
{
    moveTo(point);
    press(button);
    release(button);
}

void XClient::doubleClick(CGPoint point)
{
    click(point);
    click(point);
}

void XClient::turnWheel(Button direction, int notches)
{
    for (int i = 0; i < notches; ++i) {
        press(direction);
        release(direction);
    }
}

// --- the keyboard

XClient::Key XClient::keyOf(KeySymbol symbol)
{
    const std::uint8_t lowest = xcb_get_setup(get())->min_keycode, highest = xcb_get_setup(get())->max_keycode;
    const auto map = Own(xcb_get_keyboard_mapping_reply(
        get(), xcb_get_keyboard_mapping(get(), lowest, static_cast<std::uint8_t>(highest - lowest + 1)), nullptr));
    if (!map) throw std::runtime_error("no keyboard");
    std::optional<std::uint8_t> unused;
    for (unsigned code = lowest; code <= highest; ++code) {
        const std::span symbols(xcb_get_keyboard_mapping_keysyms(map.get()) +
                                    (code - lowest) * map->keysyms_per_keycode,
                                map->keysyms_per_keycode);
        for (std::size_t level = 0; level < 2 && level < symbols.size(); ++level)
            if (symbols[level] == symbol) return {static_cast<std::uint8_t>(code), level == 1};
        if (std::ranges::count(symbols, xcb_keysym_t{XKB_KEY_NoSymbol}) == map->keysyms_per_keycode)
            unused = static_cast<std::uint8_t>(code);
    }
    if (!unused) throw std::runtime_error("no key is free");
    // it keeps the new symbol, since the program reads the keymap when it sees the key
    const xcb_keysym_t both[] = {symbol, symbol};
    xcb_change_keyboard_mapping(get(), 1, *unused, 2, both);
    synchronize();
    return {*unused, false};
}

void XClient::pressKey(KeySymbol symbol) { fake(XCB_KEY_PRESS, keyOf(symbol).code); }
void XClient::releaseKey(KeySymbol symbol) { fake(XCB_KEY_RELEASE, keyOf(symbol).code); }

void XClient::key(KeySymbol symbol, std::span<const KeySymbol> modifiers)
{
    for (const KeySymbol modifier : modifiers) pressKey(modifier);
    const Key key = keyOf(symbol);
    if (key.shifted) pressKey(XKB_KEY_Shift_L);
    fake(XCB_KEY_PRESS, key.code);
    fake(XCB_KEY_RELEASE, key.code);
    if (key.shifted) releaseKey(XKB_KEY_Shift_L);
    for (const KeySymbol modifier : modifiers) releaseKey(modifier);
}

void XClient::type(const std::string& ascii)
{
    for (const char character : ascii) key(static_cast<unsigned char>(character));
}
