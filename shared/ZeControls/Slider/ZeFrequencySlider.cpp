#include "Slider/ZeFrequencySlider.h"

#include <cmath>

NS_CLASS_TABLE(ZeFrequencySlider, ZeSlider, "")
    .key("freqValue", &ZeFrequencySlider::freqValue, &ZeFrequencySlider::setFreqValue)
        .key("minFreqValue", &ZeFrequencySlider::minFreqValue, &ZeFrequencySlider::setMinFreqValue)
        .key("maxFreqValue", &ZeFrequencySlider::maxFreqValue, &ZeFrequencySlider::setMaxFreqValue)
NS_CLASS_TABLE_END

double MelFromHz(double hz) { return 2595.0 * std::log10(1.0 + hz / 700.0); }
double HzFromMel(double mel) { return (std::pow(10.0, mel / 2595.0) - 1.0) * 700.0; }

void ZeFrequencySlider::sliderInit()
{
    ZeSlider::sliderInit();
    setMinFreqValue(20.0);
    setMaxFreqValue(20000.0);
    setSmallStep(1.0);
    setLargeStep(100.0);
}

double ZeFrequencySlider::freqValue() const { return HzFromMel(doubleValue()); }
double ZeFrequencySlider::minFreqValue() const { return HzFromMel(minValue()); }
double ZeFrequencySlider::maxFreqValue() const { return HzFromMel(maxValue()); }
void ZeFrequencySlider::setMinFreqValue(double hz) { setMinValue(MelFromHz(hz)); }
void ZeFrequencySlider::setMaxFreqValue(double hz) { setMaxValue(MelFromHz(hz)); }

void ZeFrequencySlider::setFreqValue(double hz)
{
    const RetainPtr<ZeFrequencySlider> keep(this); // who observes the frequency may let go of the slider
    const double mel = MelFromHz(hz);
    const double oldMel = doubleValue();
    setDoubleValue(mel);
    if (oldMel != mel) sendActionToTarget();
}

void ZeFrequencySlider::changeValueBy(double deltaHz) { setFreqValue(freqValue() + deltaHz); }

void ZeFrequencySlider::valueDidChange()
{
    ZeSlider::valueDidChange();
    willChangeValueForKey("freqValue");
    didChangeValueForKey("freqValue");
}
