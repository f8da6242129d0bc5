#pragma once

/// Tick marks at round frequencies, under a frequency slider.
///
/// The interface description connects `slider` and gives the scale the slider's x and width. The marks stand where the
/// knob's centre would, and follow the slider's range. A label that would touch a more important one is left out.

#include "AppKit/NSView.h"
#include "Foundation/NSClass.h"
#include "Slider/ZeFrequencySlider.h"

class TonaroFrequencyScale : public NSView {
public:
    NS_CLASS(TonaroFrequencyScale)

    void awakeFromNib() override;
    void observeValueForKeyPath(const NSString* keyPath, NSObject* object, void* context) override;
    void drawRect(NSRect dirty) override;

    struct Mark {
        CGFloat x; ///< in this view's coordinates
        const char* label;
        bool isLabelled;
    };
    /// The marks within the slider's range, in the order of their frequency.
    std::vector<Mark> marks() const;

private:
    CGFloat xOf(double mel) const; ///< of the knob's centre, in this view's coordinates

    Outlet<ZeFrequencySlider> slider;
};
