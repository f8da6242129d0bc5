#pragma once

/// The one menu that is open: its window, the view it belongs to, and who waits for the choice. For sources of this
/// folder.

#include "AppKit/NSMenuView.h"

/// Where a menu of `size` goes: below `anchor`, above it where there is no room, otherwise as near as `screen` lets it,
/// and never larger than that. All in the same coordinates; an empty screen limits nothing.
NSRect NSMenuFrame(NSSize size, NSRect anchor, NSRect screen);

class NSMenuSession : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    static NSMenuSession* current(); ///< null while no menu is open
    static bool begin(NSMenu& menu, const NSMenuPlacement& placement, NSView& owner, NSMenu::Completion completion);

    const NSMenu* menu() const { return mMenu; }
    NSView* owner() const { return mOwner; }
    NSWindow* window() const { return mWindow; }
    /// Closes the window, then tells who waits, then sends the action of `chosen`.
    void end(NSMenuItem* chosen);

private:
    bool open(const NSMenuPlacement& placement);

    RetainPtr<NSMenu> mMenu;
    RetainPtr<NSView> mOwner;
    RetainPtr<NSWindow> mWindow;
    NSMenu::Completion mCompletion;
};
