#pragma once

/// A fader in decibels that also offers its value as a linear amplitude ratio.
///
/// Every change announces the key "gainRatio".

#include "Slider/ZeSlider.h"

class ZeGainFader : public ZeSlider {
public:
    NS_CLASS(ZeGainFader)

    /// 10 ^ (dB / 20); exactly 0 at or below `minusInfinity`. 0 dB gives 1, -6 dB 0.501.
    double gainRatio() const;
    /// Moves the fader to 20 log10 of `ratio`, computed in 32-bit floats, and gives a bound object the value within the
    /// range.
    void setGainRatio(double ratio);
    /// dB; the slider's minimum when it was initialised, whatever the minimum becomes later.
    double minusInfinity() const { return mMinusInfinity; }
    void setMinusInfinity(double decibels) { mMinusInfinity = decibels; }

    void sliderInit() override; ///< steps of 1 dB and 6 dB
    void valueDidChange() override;

private:
    double mMinusInfinity = 0;
};
