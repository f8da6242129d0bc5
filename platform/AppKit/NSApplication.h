#pragma once

/// What exists once in a program: the connection to the window system, the list of windows, the current event.

#include "AppKit/NSWindow.h"

class NSApplication final : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    static NSApplication* sharedApplication();

    /// Windows of the old display must be closed before it is replaced.
    void setDisplay(std::unique_ptr<NSDisplay> display);
    NSDisplay* display() const { return mDisplay.get(); } ///< null until one is set

    /// All windows are drawn so from now on; without a value as the display's desktop wants it, also when that changes.
    void setAppearance(std::optional<NSAppearanceName> appearance);

    /// The event that a window delivers just now; null between events.
    NSEvent* currentEvent() const { return mCurrentEvent; }
    const std::vector<NSWindow*>& windows() const { return mWindows; } ///< the open ones, in the order of their birth

    void run();  ///< the run loop, until `stop` or until nothing is left to wait for
    void stop(); ///< at the end of this turn

private:
    friend class NSWindow;
    void updateAppearance();

    std::unique_ptr<NSDisplay> mDisplay;
    std::optional<NSAppearanceName> mAppearance;
    RetainPtr<NSEvent> mCurrentEvent;
    std::vector<NSWindow*> mWindows; // each takes itself out when it closes
};
