#include "Slider/ZeGainFader.h"

#include <cmath>

NS_CLASS_TABLE(ZeGainFader, ZeSlider, "")
    .key("gainRatio", &ZeGainFader::gainRatio, &ZeGainFader::setGainRatio)
        .key("minusInfinity", &ZeGainFader::minusInfinity, &ZeGainFader::setMinusInfinity)
NS_CLASS_TABLE_END

void ZeGainFader::sliderInit()
{
    ZeSlider::sliderInit();
    mMinusInfinity = minValue();
    setSmallStep(1.0);
    setLargeStep(6.0);
}

double ZeGainFader::gainRatio() const
{
    const double decibels = doubleValue();
    return mMinusInfinity >= decibels ? 0.0 : std::pow(10.0, decibels / 20.0);
}

void ZeGainFader::setGainRatio(double ratio)
{
    const RetainPtr<ZeGainFader> keep(this); // who observes the ratio may let go of the fader
    const double decibels = 20.0F * std::log10(static_cast<float>(ratio));
    setDoubleValue(decibels);
    setBoundObjectValue(decibels);
}

void ZeGainFader::valueDidChange()
{
    ZeSlider::valueDidChange();
    willChangeValueForKey("gainRatio");
    didChangeValueForKey("gainRatio");
}
