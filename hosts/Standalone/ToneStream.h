#pragma once

/// A unit's tone as it is played: from its start to its end or to a stop, with its level.

#include "Standalone/SoundOutput.h"
#include "ToneUnit/ToneRenderer.h"
#include "ToneUnit/ToneUnit.h"

#include <atomic>
#include <cstdint>

class ToneStream final : public SoundSource {
public:
    /// @param unit  outlives the stream
    explicit ToneStream(const ToneUnit& unit) : mUnit(unit) {}

    const ToneUnit& unit() const { return mUnit; }
    /// Back to the first sample. Nobody may be rendering.
    void begin(double sampleRate);

    // --- from any thread

    void fadeOut() { mFades = true; } ///< to silence within hundredths of a second
    bool isOver() const { return mIsOver; }
    std::uint64_t position() const { return mPosition; } ///< samples since the start
    float takePeak() { return mPeak.exchange(0); }       ///< the largest magnitude since it was asked last

    /// On one thread at a time; follows the unit's values block by block.
    void render(std::span<float> samples) noexcept override;

private:
    void fade(std::span<float> samples);
    void measure(std::span<const float> samples);

    const ToneUnit& mUnit;
    double mRate = kToneDefaultSampleRate; // Hz
    ToneRenderer mRenderer;
    float mLevel = 1; // 0 once faded out
    std::atomic<bool> mFades = false, mIsOver = false;
    std::atomic<std::uint64_t> mPosition = 0;
    std::atomic<float> mPeak = 0;
};
