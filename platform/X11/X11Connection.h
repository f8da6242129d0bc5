#pragma once

/// A connection to an X server: its screen, names, replies and the queue of events. Knows no window.
///
/// Failure: `open` answers null and says why. A connection that breaks later stays usable as an object: requests do
/// nothing, replies are null, `isLost()` answers true.

#include "X11/X11Support.h"

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <type_traits>

enum class X11Atom {
    WM_PROTOCOLS,
    WM_DELETE_WINDOW,
    _NET_WM_PING,
    _NET_WM_NAME,
    _NET_WM_PID,
    _NET_WM_WINDOW_TYPE,
    _NET_WM_WINDOW_TYPE_NORMAL,
    _NET_WM_WINDOW_TYPE_POPUP_MENU,
    UTF8_STRING,
    CLIPBOARD,
    TARGETS,
    TIMESTAMP,
    INCR,
    TONARO_CLIPBOARD,
    MANAGER,
    _XSETTINGS_SETTINGS,
    count
};

class X11Connection {
public:
    /// @param displayName  null takes the environment's
    static std::unique_ptr<X11Connection> open(const char* displayName, std::string* error);

    xcb_connection_t* get() const { return mConnection.get(); }
    bool isLost() const { return xcb_connection_has_error(get()) != 0; }
    const xcb_screen_t& screen() const { return *mScreen; }
    int screenNumber() const { return mScreenNumber; }
    std::uint8_t depth() const { return mDepth; } ///< 24 or 32 bits of a true-colour visual, 4 bytes a pixel
    xcb_visualid_t visual() const { return mVisual; }
    xcb_colormap_t colormap() const { return mColormap; }
    xcb_atom_t atom(X11Atom name) const { return mAtoms[static_cast<std::size_t>(name)]; }
    xcb_atom_t internAtom(const std::string& name); ///< for a name that isn't known beforehand; 0 on an error
    /// Pixels per point that the desktop asks for: its text resolution over 96, in quarters from 1 to 4.
    double desktopScale();
    /// Whether the server takes pixels from shared memory; `forbidSharedMemory` after it refused once.
    bool hasSharedMemory() const { return mHasSharedMemory; }
    void forbidSharedMemory() { mHasSharedMemory = false; }
    std::uint8_t firstShmEvent() const { return mFirstShmEvent; }

    /// Waits for the answer to a request: `reply<xcb_get_property_reply>(xcb_get_property(...))`; null on an error.
    /// Events that come meanwhile wait for the next turn of the run loop.
    template <auto Function, typename Cookie> auto reply(Cookie cookie)
    {
        xcb_generic_error_t* error = nullptr;
        auto* answer = Function(get(), cookie, &error);
        const X11Block<xcb_generic_error_t> owned(error);
        keepQueuedEvents();
        return X11Block<std::remove_pointer_t<decltype(answer)>>(answer);
    }
    /// Waits until the server has done a checked request. @return its error, 0 for success
    int check(xcb_void_cookie_t cookie);
    void synchronize(); ///< waits until the server has done everything asked so far
    /// Sends what was asked. Events that come in meanwhile wait for the next turn of the run loop.
    void flush()
    {
        xcb_flush(get());
        keepQueuedEvents();
    }

    void readEvents();       ///< takes in what has arrived, without waiting
    void takeQueuedEvents(); ///< the same of what was read already: asks nothing of the system
    /// After a round trip that other code made: what came with it waits for the next turn of the run loop.
    void keepQueuedEvents();
    /// The next event that was read, or null. Of moves of the pointer in a row, only the newest.
    X11Event nextEvent();

    /// The server's time of the newest event that had one; 0 at first.
    xcb_timestamp_t lastTime() const { return mLastTime; }
    /// Notes the time of an event. @return it as seconds that don't wrap
    double secondsAt(xcb_timestamp_t time);

private:
    X11Connection() = default;
    bool chooseVisual(std::string* error);
    void internAtoms();
    void querySharedMemory();
    bool isFollowedByNewerMove(const xcb_generic_event_t& event) const;

    std::unique_ptr<xcb_connection_t, X11Releaser<xcb_disconnect>> mConnection;
    const xcb_screen_t* mScreen = nullptr; // lives with the connection
    int mScreenNumber = 0;
    std::uint8_t mDepth = 0;
    xcb_visualid_t mVisual = 0;
    xcb_colormap_t mColormap = 0;
    std::array<xcb_atom_t, static_cast<std::size_t>(X11Atom::count)> mAtoms{};
    bool mHasSharedMemory = false;
    std::uint8_t mFirstShmEvent = 0;
    std::deque<X11Event> mEvents;
    xcb_timestamp_t mLastTime = 0;
    std::int64_t mMilliseconds = 0;
};
