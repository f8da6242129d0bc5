#pragma once

/// What the windows of one connection share: the keyboard, the clipboard, the desktop's settings, cursors, and the
/// run-loop source that hands each event to its window. The display and every window hold it.

#include "AppKit/NSCursor.h"
#include "X11/X11Clipboard.h"
#include "X11/X11Keyboard.h"
#include "X11/X11Settings.h"

#include <unordered_map>

class X11Window;

class X11Server : public std::enable_shared_from_this<X11Server> {
public:
    static std::shared_ptr<X11Server> connect(const char* displayName, std::string* error);
    ~X11Server();
    X11Server(const X11Server&) = delete;
    X11Server& operator=(const X11Server&) = delete;

    X11Connection& connection() { return *mConnection; }
    X11Keyboard& keyboard() { return *mKeyboard; }
    X11Clipboard& clipboard() { return *mClipboard; }
    X11Settings& settings() { return *mSettings; }
    xcb_cursor_t cursor(NSCursorShape shape);

    void add(xcb_window_t id, X11Window& window) { mWindows[id] = &window; }
    void remove(xcb_window_t id) { mWindows.erase(id); }

    void watchParent(xcb_window_t parent); ///< a window of another program, around one of ours

private:
    X11Server() = default;
    void attachToRunLoop();
    void detachFromRunLoop();
    void handleEvents(void (X11Connection::*take)());
    void handle(const xcb_generic_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& event);
    void handleParentHidden(xcb_window_t parent);
    void connectionLost();
    std::vector<xcb_window_t> windowIds() const;
    X11Window* window(xcb_window_t id) const;

    std::unique_ptr<X11Connection> mConnection;
    std::unique_ptr<X11Keyboard> mKeyboard;
    std::unique_ptr<X11Clipboard> mClipboard;
    std::unique_ptr<X11Settings> mSettings;
    std::unordered_map<xcb_window_t, X11Window*> mWindows; // each takes itself out
    std::unordered_map<NSCursorShape, xcb_cursor_t> mCursors;
    RetainPtr<CFFileDescriptor> mDescriptor;
    std::uint64_t mObserver = 0;
};
