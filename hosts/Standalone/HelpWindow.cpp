#include "Standalone/HelpWindow.h"

#include "AppKit/NSApplication.h"
#include "AppKit/NSNib.h"
#include "Foundation/NSBundle.h"
#include "Foundation/NSNotification.h"

NS_CLASS_TABLE(HelpWindow, NSObject, "")
    .action("showHelp:", &HelpWindow::showHelp).outlet("page", &HelpWindow::page)
NS_CLASS_TABLE_END

bool HelpWindow::initWithScale(double scale)
{
    mScale = scale;
    NSNotificationCenter::defaultCenter()->addObserver(this, "showHelp:", NSString::string("ZeHelpNotification").get(),
                                                       nullptr);
    return NSObject::init();
}

void HelpWindow::showHelp(NSNotification*)
{
    close();
    if (!NSLoadNibNamed(NSString::string("Help").get(), this) || !page) return;
    const RetainPtr<NSView> view = page.take();
    NSBackendWindowOptions options;
    options.contentSize = view->frame().size;
    options.scale = mScale;
    mWindow = make<NSWindow>(&NSWindow::initWithDisplay, NSApplication::sharedApplication()->display(), options);
    if (!mWindow) return;
    const RetainPtr<NSString> title = NSString::string("Tonaro Help");
    mWindow->setTitle(NSBundle::mainBundle()->localizedStringForKey(title, nullptr, nullptr).get());
    mWindow->setContentView(view);
    mWindow->orderFront();
}

void HelpWindow::close()
{
    if (const RetainPtr<NSWindow> window = std::move(mWindow)) window->close();
}
