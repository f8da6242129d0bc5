#pragma once

/// An output that nobody hears: it asks for the samples as time goes by, on the run loop, so that everything else runs
/// as it does with a device.

#include "CoreFoundation/CFRunLoop.h"
#include "Standalone/SoundOutput.h"

#include <array>
#include <cstdint>

class SilentOutput final : public SoundOutput {
public:
    explicit SilentOutput(double sampleRate) : mRate(sampleRate) {}
    ~SilentOutput() override;

    std::string name() const override { return {}; }
    double sampleRate() const override { return mRate; }
    void start(SoundSource& source) override;
    bool isAlive() override { return true; }

private:
    void catchUp();

    double mRate; // Hz
    SoundSource* mSource = nullptr;
    CFAbsoluteTime mStarted = 0;
    std::uint64_t mDone = 0; // samples
    RetainPtr<CFRunLoopTimer> mTimer;
    std::array<float, 512> mBlock{};
};
