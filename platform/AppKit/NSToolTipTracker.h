#pragma once

/// Shows the tool tip of the view on which the pointer rests, and hides it when the person does anything.

#include "AppKit/NSView.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/WeakPtr.h"

class NSToolTipTracker {
public:
    explicit NSToolTipTracker(NSWindow& window) : mWindow(window) {}
    ~NSToolTipTracker();
    NSToolTipTracker(const NSToolTipTracker&) = delete;
    NSToolTipTracker& operator=(const NSToolTipTracker&) = delete;

    void eventArrives(const NSEvent& event);
    void hide(); ///< and forgets what it was about to show

    static constexpr CFTimeInterval kRest = 0.6;

private:
    void show();

    NSWindow& mWindow;
    RetainPtr<CFRunLoopTimer> mTimer;
    RetainPtr<NSView> mBubble;
    NSPoint mPointer;
};
