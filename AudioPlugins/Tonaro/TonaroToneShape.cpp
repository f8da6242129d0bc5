#include "TonaroToneShape.h"

#include "Slider/ZeFrequencySlider.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kLowestHz = 0.01;
constexpr double kMostSteps = 100000;
constexpr double kLongestPeriod = 96, kShortestPeriod = 12; // points

int stepsIn(CGFloat width, CGFloat step)
{
    return static_cast<int>(std::clamp(std::ceil(width / step), 1.0, kMostSteps));
}

double waveAt(int waveform, double phase)
{
    const double t = phase - std::floor(phase);
    switch (waveform) {
    case 1: // triangle
        return t < 0.25 ? 4 * t : t < 0.75 ? 2 - 4 * t : 4 * t - 4;
    case 2: // square
        return t < 0.5 ? 1 : -1;
    case 3: // sawtooth
        return t < 0.5 ? 2 * t : 2 * t - 2;
    default:
        return std::sin(2 * std::numbers::pi * t);
    }
}

} // namespace

double TonaroToneShape::hzAt(double part) const
{
    if (isLogarithmic && startHz > 0 && endHz > 0) return startHz * std::pow(endHz / startHz, part);
    return startHz + (endHz - startHz) * part;
}

double TonaroToneShape::heightOf(double hz) const
{
    const double height = MelFromHz(std::max(hz, 0.0)) / MelFromHz(highestHz);
    return std::isnan(height) ? 0 : std::clamp(height, 0.0, 1.0);
}

double TonaroToneShape::hzOf(double height) const
{
    const double hz = HzFromMel(std::clamp(height, 0.0, 1.0) * MelFromHz(highestHz));
    const double rounded = hz >= 100 ? std::round(hz) : std::round(hz * 100) / 100;
    return rounded > kLowestHz ? std::min(rounded, highestHz) : kLowestHz;
}

std::vector<CGPoint> TonaroToneShape::path(CGRect inside, bool asIfItSwept, CGFloat step) const
{
    std::vector<CGPoint> points;
    const int count = asIfItSwept ? stepsIn(inside.size.width, step) : 1;
    for (int i = 0; i <= count; ++i) {
        const double height = heightOf(asIfItSwept ? hzAt(double(i) / count) : startHz);
        points.push_back(
            {inside.origin.x + inside.size.width * i / count, CGRectGetMaxY(inside) - height * inside.size.height});
    }
    return points;
}

std::vector<CGPoint> TonaroToneShape::wave(CGRect inside, CGFloat step) const
{
    std::vector<CGPoint> points;
    const int count = stepsIn(inside.size.width, step);
    const double apart = inside.size.width / count, half = inside.size.height / 2;
    const auto periodAt = [&](double hz) {
        return kLongestPeriod * std::pow(kShortestPeriod / kLongestPeriod, heightOf(hz));
    };
    const double steadyPeriod = periodAt(startHz);
    double phase = 0;
    for (int i = 0; i <= count; ++i) {
        points.push_back({inside.origin.x + i * apart, CGRectGetMidY(inside) - half * waveAt(waveform, phase)});
        phase += apart / (sweeps ? periodAt(hzAt(double(i) / count)) : steadyPeriod);
    }
    return points;
}
