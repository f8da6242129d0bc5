#pragma once

/// The tone as samples: mono, full scale 1.0 at 0 dB.
///
/// Every waveform starts at zero and rises. Triangle, square and sawtooth are sums of the partials below half the
/// sample rate, each at its exact amplitude up to 0.9 of that and fading out above (the first one is always whole), so
/// nothing folds back. Where more than `kToneMostPartials` would fit (below 94 Hz at 48000), the plain waveform with
/// smoothed steps stands in. A sum overshoots at steps by up to 18 %, so a writer of integer samples limits what it
/// gets.
///
/// A sweep reaches the end frequency after the length; logarithmic sweeps take the same time for each octave. The phase
/// goes on through every change of the settings. After the length comes silence.
///
/// `render` neither allocates nor locks.

#include "ToneUnit/ToneParameters.h"

#include <cstdint>
#include <span>

inline constexpr int kToneMostPartials = 256;

class ToneRenderer {
public:
    /// The next samples.
    void render(const ToneSettings& settings, std::span<float> samples);
    void reset() { *this = {}; } ///< back to the first sample

    std::uint64_t position() const { return mPosition; } ///< samples since the start
    double phase() const { return mPhase; }              ///< of the next sample, in cycles, 0 to 1

private:
    double mPhase = 0.0;
    std::uint64_t mPosition = 0;
};

/// Length of the whole tone in samples: 2.5 s at 48000 Hz gives 120000.
std::uint64_t ToneLengthInSamples(const ToneSettings& settings);
