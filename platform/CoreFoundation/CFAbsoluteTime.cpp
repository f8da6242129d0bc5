#include "CoreFoundation/CFRunLoopPrivate.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <system_error>

namespace {

std::atomic<CFManualClock*> gManualClock = nullptr;

// Longer waits are cut to this; the loop then just waits again.
constexpr CFTimeInterval kLongestWaitSeconds = 1e6;

// Rounded up, so that a timer is due when the wait is over.
timespec TimespecFromSeconds(CFTimeInterval seconds)
{
    const auto nanoseconds = static_cast<long long>(std::ceil(std::clamp(seconds, 0.0, kLongestWaitSeconds) * 1e9));
    return {static_cast<time_t>(nanoseconds / 1'000'000'000), static_cast<long>(nanoseconds % 1'000'000'000)};
}

/// @param seconds  infinity waits without a limit
int Poll(std::vector<pollfd>& descriptors, CFTimeInterval seconds)
{
    const timespec limit = TimespecFromSeconds(seconds);
    const int count = ppoll(descriptors.data(), static_cast<nfds_t>(descriptors.size()),
                            std::isinf(seconds) ? nullptr : &limit, nullptr);
    if (count >= 0) return count;
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "poll of the run loop");
    return 0;
}

} // namespace

int CFPollUntil(std::vector<pollfd>& descriptors, CFAbsoluteTime until)
{
    CFManualClock* const clock = gManualClock;
    if (!clock) return Poll(descriptors, until - CFAbsoluteTimeGetCurrent());
    const int count = Poll(descriptors, 0.0);
    if (count > 0) return count;
    if (std::isinf(until)) return Poll(descriptors, until);
    clock->advanceTo(until);
    return 0;
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent()
{
    if (const CFManualClock* clock = gManualClock) return clock->mNow;
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

CFManualClock::CFManualClock(CFAbsoluteTime start) : mNow(start), mPrevious(gManualClock.exchange(this)) {}

CFManualClock::~CFManualClock() { gManualClock = mPrevious; }

void CFManualClock::advance(CFTimeInterval seconds) { advanceTo(mNow + seconds); }

void CFManualClock::advanceTo(CFAbsoluteTime time)
{
    if (time > mNow) mNow = time;
}
