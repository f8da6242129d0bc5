#pragma once

/// The tone as samples: mono, full scale 1.0 at 0 dB.
///
/// Every waveform starts at zero and rises. Triangle, square and sawtooth are sums of the partials below half the
/// sample rate, each at its exact amplitude up to 0.9 of that and fading out above (the first one is always whole), so
/// nothing folds back. Where more than `kToneMostPartials` would fit (below 94 Hz at 48000), the plain waveform with
/// smoothed steps stands in. A sum overshoots at steps by up to 18 %, so a writer of integer samples limits what it
/// gets.
///
/// A sweep reaches the end frequency after the length; logarithmic sweeps take the same time for each octave. After the
/// length comes silence.
///
/// The phase goes on through every change of the settings, and so does the level: another gain, another waveform and a
/// length that is suddenly over come in within `kToneGlideSeconds`. No step is larger than the waveform's own.
///
/// `render` neither allocates nor locks.

#include "ToneUnit/ToneParameters.h"

#include <cstdint>
#include <span>

inline constexpr int kToneMostPartials = 256;
inline constexpr double kToneGlideSeconds = 0.01;

/// A number that goes to another one evenly, a step for each sample.
class ToneGlide {
public:
    void jumpTo(double value);
    void moveTo(double target, int steps); ///< where that is no new target, the way there goes on
    double next();
    double value() const { return mValue; }
    bool isMoving() const { return mStepsLeft > 0; }

private:
    double mValue = 0.0, mTarget = 0.0, mStep = 0.0;
    int mStepsLeft = 0;
};

class ToneRenderer {
public:
    /// The next samples.
    void render(const ToneSettings& settings, std::span<float> samples);
    void reset() { *this = {}; }        ///< back to the first sample
    void startOver() { mPosition = 0; } ///< the length begins anew; the phase goes on

    std::uint64_t position() const { return mPosition; } ///< samples since the start
    double phase() const { return mPhase; }              ///< of the next sample, in cycles, 0 to 1

private:
    void begin(const ToneSettings& settings, double amplitude);
    double wave(ToneWaveform wanted, double cycles, int glideSteps);

    double mPhase = 0.0;
    std::uint64_t mPosition = 0;
    bool mHasBegun = false;
    ToneGlide mAmplitude;
    ToneWaveform mWaveform = ToneWaveform::Sine, mBefore = ToneWaveform::Sine;
    ToneGlide mBlend; // from the waveform before to the one now
};

/// Length of the whole tone in samples: 2.5 s at 48000 Hz gives 120000.
std::uint64_t ToneLengthInSamples(const ToneSettings& settings);
