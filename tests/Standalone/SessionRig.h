#pragma once

// A session on an off-screen display, with the programs' bundles.

#include "AppKit/NSApplication.h"
#include "Standalone/Session.h"
#include "Support/BundleScene.h"

#include <gmock/gmock.h>

/// What every session needs: the display too, and the host's bundle as the main one.
class SessionScene : public BundleScene {
public:
    SessionScene()
    {
        NSBundle::setMainBundle(NSBundle::bundleWithIdentifier("org.tonaro.host"));
        NSApplication::sharedApplication()->setDisplay(NSMakeOffscreenDisplay());
    }
    ~SessionScene() { NSApplication::sharedApplication()->setDisplay(nullptr); }
};
