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

void NSApplication::run() { CFRunLoopRun(); }
void NSApplication::stop() { CFRunLoopStop(CFRunLoopGetCurrent()); }
