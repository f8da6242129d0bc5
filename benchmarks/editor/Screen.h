#pragma once

/// The display as the host sees it: windows for editors, what is drawn into them, the wheel.

#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <xcb/damage.h>
#include <xcb/xcb.h>

struct DrawnRect {
    int x, y, width, height; ///< pixels of the host's window
    double time;             ///< when it was told, as in `Now`
};

struct Point {
    int x, y;
};

/// Throws std::runtime_error where there is no display, or one without the extensions.
class Screen {
public:
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// A window of the host, shown, of one colour. What is drawn into it, or into windows inside, is noticed.
    xcb_window_t makeWindow(int width, int height);
    void destroyWindow(xcb_window_t window);
    /// The editor's window in there: place and size in pixels; of no size where there is none.
    DrawnRect editorIn(xcb_window_t window);
    /// Whether the editor's window shows more than one colour.
    bool hasPixels(xcb_window_t window);

    /// Everything drawn since the last call, into any of the windows. A thread of its own waits for it and writes down
    /// the time.
    std::vector<DrawnRect> takeDrawn();
    bool wasDrawn();
    double watchingSeconds() const; ///< processor time that the thread took

    void movePointer(Point place); ///< in the first window
    void turnWheel(bool up);
    void sync();
    /// Windows, pixel maps, fonts and so on of all programs but this connection.
    std::uint64_t resourcesOfOthers();

private:
    void watch();
    void notice(const xcb_damage_notify_event_t& event);
    bool isOfOneColour(xcb_window_t window, int width, int height);

    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;
    static Connection connect();

    Connection mConnection, mWatching;
    xcb_screen_t* mScreen;
    std::uint8_t mDamageEvent = 0;
    std::mutex mMutex;
    std::vector<DrawnRect> mDrawn; // guarded by it
    std::thread mThread;
};
