#pragma once

/// A person and a window manager in one: finds windows, looks at their pixels, moves the real pointer, types on the
/// real keyboard.

#include "AppKit/NSEvent.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <xcb/xcb.h>

struct XDisconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

struct XFree {
    void operator()(void* block) const { std::free(block); }
};

class XClient {
public:
    enum Button : std::uint8_t { left = 1, middle = 2, right = 3, wheelUp = 4, wheelDown = 5 };
    using KeySymbol = std::uint32_t; ///< as in xkbcommon-keysyms.h; ASCII stands for itself

    explicit XClient(const std::string& display);

    xcb_connection_t* get() const { return mConnection.get(); }
    const xcb_screen_t& screen() const { return *mScreen; }
    xcb_atom_t atom(const char* name);
    void synchronize(); ///< the server has done all that was asked of it
    /// Looks again and again. @return whether it came true in time
    bool waitUntil(const std::function<bool()>& isTrue, double seconds = 10);

    // --- windows

    /// A plain window of this client, shown.
    xcb_window_t makeWindow(int x, int y, int width, int height);
    std::vector<xcb_window_t> windowsNamed(const std::string& name); ///< shown ones, the oldest first
    xcb_window_t ownerOf(const char* selection);                     ///< 0 when nobody has it
    std::vector<xcb_window_t> menus();                               ///< shown ones that no window manager touches
    xcb_window_t waitForMenu();                                      ///< that holds the keyboard; 0 when none comes
    bool isKeyboardGrabbed();
    CGRect frame(xcb_window_t window); ///< on the screen
    void moveWindow(xcb_window_t window, int x, int y);
    void focus(xcb_window_t window);
    void askToClose(xcb_window_t window) { tell(window, "WM_DELETE_WINDOW"); }
    /// A message of the window manager, with what follows its name.
    void tell(xcb_window_t window, const char* protocol, std::array<std::uint32_t, 2> details = {});
    /// 0xRRGGBB of a part of the screen, or of a window with 32 bits a pixel.
    std::vector<std::uint32_t> pixels(CGRect part, xcb_drawable_t drawable = XCB_NONE);

    // --- the pointer, in coordinates of the screen

    CGPoint pointer() const { return mPointer; } ///< where it was moved to
    void moveTo(CGPoint point);
    void glideTo(CGPoint point, int moves = 20); ///< in steps
    void press(Button button = left);
    void release(Button button = left);
    void click(CGPoint point, Button button = left);
    void doubleClick(CGPoint point);
    void turnWheel(Button direction, int notches = 1);

    // --- the keyboard

    void pressKey(KeySymbol symbol);
    void releaseKey(KeySymbol symbol);
    void key(KeySymbol symbol, std::span<const KeySymbol> modifiers = {});
    void type(const std::string& ascii);

private:
    struct Key {
        std::uint8_t code;
        bool shifted;
    };
    Key keyOf(KeySymbol symbol); ///< one without a symbol gets it
    void fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

    std::unique_ptr<xcb_connection_t, XDisconnect> mConnection;
    const xcb_screen_t* mScreen;
    CGPoint mPointer;
};
