#pragma once

/// Tells that no descriptor has become readable, without a system call. For the sources of this folder only.
///
/// Hosts look into a run loop dozens of times a second, mostly for nothing, and a `poll` is most of what that costs.
/// Where the kernel offers it (io_uring), it notes in memory that it shares with us what became readable. Where it
/// doesn't, or must not (a sandbox), nothing is ever quiet and each look polls.

#include <cstdint>
#include <span>
#include <vector>

#include <liburing.h>
#include <poll.h>

class RunLoopWatch {
public:
    RunLoopWatch();
    ~RunLoopWatch();
    RunLoopWatch(const RunLoopWatch&) = delete;
    RunLoopWatch& operator=(const RunLoopWatch&) = delete;

    /// Whether none of them can be read. False where that isn't known: those that became readable since the last look
    /// must be polled, and are watched again from the next look on, when they have been read.
    bool isQuiet(std::span<const pollfd> descriptors);
    /// The same once more, of the same descriptors.
    bool isStillQuiet() const { return mWorks && io_uring_cq_ready(&mRing) == 0; }
    /// Comes before the descriptor is closed: a watched file would stay open.
    void forget(int descriptor);

private:
    struct Watched {
        int descriptor;
        std::uint64_t id; ///< 0 once it became readable
    };

    std::vector<Watched>::iterator find(int descriptor);
    bool takeReadable();
    bool start(Watched& watched);
    bool submit();

    io_uring mRing{};
    bool mWorks;
    std::vector<Watched> mWatched;
    std::uint64_t mLastId = 0;
};
