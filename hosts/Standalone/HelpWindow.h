#pragma once

/// The host's answer to an editor that asks for help: a small window with what keys and mouse do.

#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"

class NSNotification;

/// Opens the window when "ZeHelpNotification" is posted; a second request brings it up again. Every topic leads to the
/// same page.
class HelpWindow final : public NSObject {
public:
    NS_CLASS(HelpWindow)

    /// @param scale  pixels per point; 0 asks the desktop
    bool initWithScale(double scale);
    void showHelp(NSNotification* notification);
    void close();

private:
    double mScale = 0;
    Outlet<NSView> page; ///< filled by the interface description
    RetainPtr<NSWindow> mWindow;
};
