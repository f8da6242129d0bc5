#pragma once

/// A display on a server of the test's own, and clients that write down what their windows are told.

#include "AppKit/NSWindowBackend.h"
#include "ui/XClient.h"
#include "ui/Xvfb.h"

#include <gmock/gmock.h>

/// Notes what a window is told: "down 10,20 x1", "key Home", "resized 100x50", "closed" ...
class LoggingClient final : public NSWindowBackendClient {
public:
    std::vector<std::string> log;
    std::function<void(const std::string&)> then; ///< called after each entry; may destroy the window

    bool has(const std::string& entry) const { return std::find(log.begin(), log.end(), entry) != log.end(); }

    void backendEvent(NSEvent& event) override;
    void backendResized(NSSize points, CGFloat scale) override;
    void backendExposed() override { note("exposed"); }
    void backendFocusChanged(bool focused) override { note(focused ? "focus" : "no focus"); }
    void backendCloseRequested() override { note("close"); }
    void backendGrabLost() override { note("grab lost"); }
    void backendDestroyed() override { note("destroyed"); }

private:
    void note(const std::string& entry);
};

class X11Test : public testing::Test {
protected:
    explicit X11Test(const std::string& depth = "24", const std::vector<std::string>& options = {});

    /// A window that is shown at `place` on the screen.
    std::unique_ptr<NSWindowBackend> makeWindow(LoggingClient& client, NSRect place = {{0, 0}, {200, 100}});
    /// Turns the run loop until `isTrue`. @return whether it came true in time
    bool runUntil(const std::function<bool()>& isTrue, double seconds = 10);
    bool runUntilLogged(const LoggingClient& client, const std::string& entry);
    /// Turns the run loop until all that the server knows has been handled.
    void settle(LoggingClient& client, NSWindowBackend& window);

    Xvfb server;
    XClient person;
    std::unique_ptr<NSDisplay> display;
};

/// For a window of that size in pixels, inside `parent` where there is one.
NSBackendWindowOptions XOptions(NSSize pixels, xcb_window_t parent = XCB_NONE, CGFloat scale = 1);
xcb_window_t XWindowOf(const NSWindowBackend& window);
