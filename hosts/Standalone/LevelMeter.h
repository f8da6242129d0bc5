#pragma once

/// How loud the tone is, as a bar on a decibel scale from -60 to 0.

#include "AppKit/NSView.h"
#include "Foundation/NSClass.h"

class LevelMeter final : public NSView {
public:
    NS_CLASS(LevelMeter)

    void setLevel(float level); ///< magnitude, 1.0 for full scale
    void drawRect(NSRect dirty) override;

    /// Where the bar ends for a level, from the view's left edge; 0 below the scale, as far as the edge above it.
    CGFloat barEnd(float level) const;

private:
    float mLevel = 0;
};
