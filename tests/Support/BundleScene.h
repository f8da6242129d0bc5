#pragma once

#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"

/// What every editor needs: a pool, a clock that the run loop moves, the programs' bundles, a language.
class BundleScene {
public:
    BundleScene()
    {
        NSBundle::setPreferredLanguages({"en"});
        for (const char* path : {TONARO_BUNDLES "/org.tonaro.view.bundle", TONARO_BUNDLES "/org.tonaro.host.bundle"})
            NSBundle::registerBundle(NSBundle::bundleWithPath(path).get());
    }
    BundleScene(const BundleScene&) = delete;
    BundleScene& operator=(const BundleScene&) = delete;

    /// Lets events be delivered for that long.
    static void run(double seconds = 0.2) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

    const NSAutoreleasePool pool;
    const CFManualClock clock;
};
