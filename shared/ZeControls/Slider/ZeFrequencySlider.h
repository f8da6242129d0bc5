#pragma once

/// A slider for frequencies on the mel scale: equal travel of the knob covers equal distances of pitch.
///
/// Slider units are mels; the properties here are hertz, computed from the slider's value and not stored. Steps are
/// hertz. Every change announces the key "freqValue".

#include "Slider/ZeSlider.h"

/// 2595 log10(1 + hz / 700): 20 Hz is 31.748 mel, 1000 Hz 999.99, 20000 Hz 3816.91.
double MelFromHz(double hz);
/// (10 ^ (mel / 2595) - 1) 700, the inverse.
double HzFromMel(double mel);

class ZeFrequencySlider : public ZeSlider {
public:
    NS_CLASS(ZeFrequencySlider)

    double freqValue() const;
    /// Moves the knob, and sends the action when that changes the slider's value. Nothing is pushed to a bound object.
    void setFreqValue(double hz);
    double minFreqValue() const; ///< 20 Hz at first
    void setMinFreqValue(double hz);
    double maxFreqValue() const; ///< 20000 Hz at first
    void setMaxFreqValue(double hz);

    void sliderInit() override; ///< steps of 1 Hz and 100 Hz
    void valueDidChange() override;
    void changeValueBy(double deltaHz) override;
};
