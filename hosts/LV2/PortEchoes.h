#pragma once

/// What an editor wrote to one port, for as long as the host may report it back.
///
/// Some hosts report every write of an editor to the editor itself, some report the last of several, some none. A
/// report that equals a write, in the order of the writes, is taken for its echo. Where writes that came later are
/// never reported, it wasn't one: then the host has set that value itself.
///
/// Writes 1, 2, 3, reports 1, 2, 3: three echoes. Writes 1, 2, 3, reports 2, and no more: after `kSeconds`, `settle`
/// answers 2.

#include "CoreFoundation/CFRunLoop.h"

#include <deque>
#include <optional>

class PortEchoes {
public:
    static constexpr CFTimeInterval kSeconds = 1.0; ///< how long an echo is waited for

    void wrote(float value, CFAbsoluteTime now);
    /// @return whether the report is the echo of a write
    bool take(float reported, CFAbsoluteTime now);
    bool isEmpty() const { return mWrites.empty(); } ///< no write waits for its echo
    /// The host's own value that was taken for an echo, once that is known.
    std::optional<float> settle(CFAbsoluteTime now);
    /// When `settle` has something to say, at the latest; infinity where nothing is in doubt.
    CFAbsoluteTime settlesAt() const;

private:
    struct Write {
        float value;
        CFAbsoluteTime expires;
    };
    void forgetExpired(CFAbsoluteTime now);

    std::deque<Write> mWrites;
    std::optional<float> mDoubtful; ///< reported since the last write, and older than that
};
