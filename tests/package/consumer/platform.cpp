// A window in memory; the one on a screen is linked, too.
#include "AppKit/NSApplication.h"
#include "Foundation/NSAutoreleasePool.h"
#include "X11/X11Display.h"

#include <cstdio>

int main()
{
    const NSAutoreleasePool pool;
    std::string error;
    const auto screen = NSMakeX11Display("no such display", &error);
    NSApplication* const application = NSApplication::sharedApplication();
    application->setDisplay(NSMakeOffscreenDisplay());
    NSBackendWindowOptions options;
    options.contentSize = {120, 40};
    options.scale = 2;
    const auto window = make<NSWindow>(&NSWindow::initWithDisplay, application->display(), options);
    const bool works = !screen && !error.empty() && CGBitmapContextGetWidth(window->bitmap()) == 240;
    window->close();
    application->setDisplay(nullptr);
    std::puts(works ? "platform works" : "wrong window");
}
