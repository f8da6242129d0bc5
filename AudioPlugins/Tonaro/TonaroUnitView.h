#pragma once

/// A view inside the editor that follows the unit by itself. The editor tells it which one.

#include "AppKit/NSView.h"
#include "AudioUnit/AudioUnit.h"

class TonaroUnitView : public NSView {
public:
    /// The unit outlives the binding; a second call binds anew.
    virtual void setAU(AudioUnit unit) = 0;
};
