#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSApplication, NSObject, "")
NS_CLASS_TABLE_END

NSApplication* NSApplication::sharedApplication()
{
    static const RetainPtr<NSApplication> application = make<NSApplication>();
    return application;
}

void NSApplication::setDisplay(std::unique_ptr<NSDisplay> display)
{
    mDisplay = std::move(display);
    if (mDisplay) mDisplay->setAppearanceHandler([this] { updateAppearance(); });
    updateAppearance();
}

void NSApplication::setAppearance(std::optional<NSAppearanceName> appearance)
{
    mAppearance = appearance;
    updateAppearance();
}

void NSApplication::updateAppearance()
{
    const NSAppearanceName ofDesktop = mDisplay ? mDisplay->appearance() : NSAppearanceName::light;
    NSAppearance::setCurrent(mAppearance.value_or(ofDesktop));
}

void NSApplication::run() { CFRunLoopRun(); }
void NSApplication::stop() { CFRunLoopStop(CFRunLoopGetCurrent()); }
