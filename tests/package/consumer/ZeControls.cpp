// A slider in hertz.
#include "Slider/ZeFrequencySlider.h"

#include "Foundation/NSAutoreleasePool.h"

#include <cmath>
#include <cstdio>

int main()
{
    const NSAutoreleasePool pool;
    const auto slider = make<ZeFrequencySlider>(CGRectMake(0, 0, 200, 26));
    slider->setFreqValue(440);
    std::puts(std::abs(slider->freqValue() - 440) < 1e-6 ? "ZeControls works" : "wrong frequency");
}
