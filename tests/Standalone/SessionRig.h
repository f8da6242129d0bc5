#pragma once

// A session on an off-screen display, with the programs' bundles.

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"
#include "Standalone/Session.h"

#include <gmock/gmock.h>

/// What every session needs: pool, clock, display, bundle.
class SessionScene {
public:
    SessionScene()
    {
        NSBundle::setPreferredLanguages({"en"});
        for (const char* path : {TONARO_BUNDLES "/org.tonaro.view.bundle", TONARO_BUNDLES "/org.tonaro.host.bundle"}) {
            const auto bundle = NSBundle::bundleWithPath(path);
            NSBundle::registerBundle(bundle);
        }
        NSBundle::setMainBundle(NSBundle::bundleWithIdentifier("org.tonaro.host"));
        NSApplication::sharedApplication()->setDisplay(NSMakeOffscreenDisplay());
    }
    ~SessionScene() { NSApplication::sharedApplication()->setDisplay(nullptr); }
    SessionScene(const SessionScene&) = delete;
    SessionScene& operator=(const SessionScene&) = delete;

    static void run(double seconds = 0.2) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

    const NSAutoreleasePool pool;
    const CFManualClock clock;
};
