#pragma once

/// What a view inside the editor is that follows the unit by itself. The editor tells it which one.

#include "AudioUnit/AudioUnit.h"

class TonaroUnitFollower {
public:
    virtual ~TonaroUnitFollower() = default;
    /// The unit outlives the binding; a second call binds anew.
    virtual void setAU(AudioUnit unit) = 0;
};
