#include "Standalone/SilentOutput.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CFTimeInterval kInterval = 0.02;
constexpr double kMostSeconds = 1; ///< caught up at once; a program that stood still for longer leaves the rest out

} // namespace

SilentOutput::~SilentOutput() { CFRunLoopTimerInvalidate(mTimer.get()); }

void SilentOutput::start(SoundSource& source)
{
    mSource = &source;
    mStarted = CFAbsoluteTimeGetCurrent();
    mTimer = CFRunLoopTimerCreate(mStarted + kInterval, kInterval, [this] { catchUp(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer.get(), kCFRunLoopCommonModes);
}

void SilentOutput::catchUp()
{
    const auto due = static_cast<std::uint64_t>(std::max(0.0, (CFAbsoluteTimeGetCurrent() - mStarted) * mRate));
    const auto most = static_cast<std::uint64_t>(kMostSeconds * mRate);
    if (due > mDone + most) mDone = due - most;
    while (mDone < due) {
        const std::span<float> block(mBlock.data(), std::min<std::uint64_t>(mBlock.size(), due - mDone));
        mSource->render(block);
        mDone += block.size();
    }
}
