#pragma once

/// What a host asks of an audio unit's view factory.

#include "AudioUnit/AudioUnit.h"
#include "CoreGraphics/CGGeometry.h"

class NSString;
class NSView;

class AUCocoaUIBase {
public:
    virtual std::uint32_t interfaceVersion() const = 0;
    /// @return a view bound to the unit, autoreleased, or null
    virtual NSView* uiViewForAudioUnit(AudioUnit unit, CGSize preferredSize) = 0;

protected:
    ~AUCocoaUIBase() = default;
};
