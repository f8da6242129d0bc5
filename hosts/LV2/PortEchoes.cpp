#include "LV2/PortEchoes.h"

#include <algorithm>
#include <limits>
#include <utility>

void PortEchoes::wrote(float value, CFAbsoluteTime now)
{
    forgetExpired(now);
    mWrites.push_back({value, now + kSeconds});
    mDoubtful.reset();
}

bool PortEchoes::take(float reported, CFAbsoluteTime now)
{
    forgetExpired(now);
    mDoubtful.reset();
    const auto found = std::find_if(mWrites.begin(), mWrites.end(),
                                    [reported](const Write& write) { return write.value == reported; });
    if (found == mWrites.end()) return false;
    mWrites.erase(mWrites.begin(), found + 1);
    if (!mWrites.empty()) mDoubtful = reported;
    return true;
}

std::optional<float> PortEchoes::settle(CFAbsoluteTime now)
{
    forgetExpired(now);
    return mWrites.empty() ? std::exchange(mDoubtful, std::nullopt) : std::nullopt;
}

CFAbsoluteTime PortEchoes::settlesAt() const
{
    if (!mDoubtful) return std::numeric_limits<CFAbsoluteTime>::infinity();
    return mWrites.empty() ? 0.0 : mWrites.back().expires;
}

void PortEchoes::forgetExpired(CFAbsoluteTime now)
{
    while (!mWrites.empty() && mWrites.front().expires <= now) mWrites.pop_front();
}
