#pragma once

/// What the desktop's settings manager says, now and whenever it changes. A manager may come, go and be replaced at any
/// time; without one, and where what it says can't be read, the appearance is light.
///
/// The environment's GTK_THEME ("Adwaita:dark") stands above the manager, as it does for other programs.
///
/// Choice: desktop portals aren't asked, since a connection to the message bus would come into every plug-in host with
/// them. Where a desktop tells nobody else (GNOME's dark style with a light theme), the environment or the program
/// must.

#include "X11/X11Connection.h"
#include "X11/X11Theme.h"

#include <functional>

class X11Settings {
public:
    explicit X11Settings(X11Connection& connection);
    X11Settings(const X11Settings&) = delete;
    X11Settings& operator=(const X11Settings&) = delete;

    NSAppearanceName appearance() const { return mAppearance; }
    void setAppearanceHandler(std::function<void()> changed) { mChanged = std::move(changed); }

    /// @return whether the event was about settings. Calls the handler, which may do anything.
    bool handle(const xcb_generic_event_t& event);

private:
    bool isNewManager(const xcb_generic_event_t& event) const;
    void findManager();
    void read();
    X11Theme theme();

    X11Connection& mConnection;
    xcb_atom_t mSelection = XCB_NONE, mProperty = XCB_NONE, mManagerMessage = XCB_NONE;
    xcb_window_t mManager = XCB_NONE;
    NSAppearanceName mAppearance = NSAppearanceName::light;
    std::function<void()> mChanged;
};
