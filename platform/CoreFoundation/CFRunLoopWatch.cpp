#include "CoreFoundation/CFRunLoopWatch.h"

#include <algorithm>
#include <cerrno>

namespace {

constexpr unsigned kMostDescriptors = 16;
constexpr std::uint64_t kNobody = 0; // whose word is of no interest

} // namespace

// What the kernel has to note it notes when the thread comes back from a system call of its own anyway: it never wakes
// a host that sleeps.
RunLoopWatch::RunLoopWatch() : mWorks(io_uring_queue_init(kMostDescriptors, &mRing, IORING_SETUP_COOP_TASKRUN) == 0) {}

RunLoopWatch::~RunLoopWatch()
{
    if (mWorks) io_uring_queue_exit(&mRing);
}

bool RunLoopWatch::isQuiet(std::span<const pollfd> descriptors)
{
    if (!mWorks || descriptors.size() > kMostDescriptors || takeReadable()) return false;
    bool isNew = false;
    for (const pollfd& polled : descriptors) {
        auto found = find(polled.fd);
        if (found == mWatched.end()) found = mWatched.insert(found, {polled.fd, kNobody});
        if (found->id != kNobody) continue;
        if (!start(*found)) return false;
        isNew = true;
    }
    return !isNew || (submit() && !takeReadable());
}

void RunLoopWatch::forget(int descriptor)
{
    const auto found = find(descriptor);
    if (found == mWatched.end()) return;
    const std::uint64_t id = found->id;
    mWatched.erase(found);
    io_uring_sqe* const request = id == kNobody ? nullptr : io_uring_get_sqe(&mRing);
    if (!request) return;
    io_uring_prep_poll_remove(request, id);
    io_uring_sqe_set_data64(request, kNobody);
    submit();
}

std::vector<RunLoopWatch::Watched>::iterator RunLoopWatch::find(int descriptor)
{
    return std::find_if(mWatched.begin(), mWatched.end(),
                        [descriptor](const Watched& watched) { return watched.descriptor == descriptor; });
}

/// @return whether there were any
bool RunLoopWatch::takeReadable()
{
    bool any = false;
    unsigned head = 0, count = 0;
    const io_uring_cqe* entry = nullptr;
    io_uring_for_each_cqe(&mRing, head, entry)
    {
        ++count;
        for (Watched& watched : mWatched) {
            if (watched.id == kNobody || watched.id != entry->user_data) continue;
            watched.id = kNobody;
            any = true;
        }
    }
    io_uring_cq_advance(&mRing, count);
    return any;
}

bool RunLoopWatch::start(Watched& watched)
{
    io_uring_sqe* const request = io_uring_get_sqe(&mRing);
    if (!request) return false;
    io_uring_prep_poll_add(request, watched.descriptor, POLLIN);
    watched.id = ++mLastId;
    io_uring_sqe_set_data64(request, watched.id);
    return true;
}

bool RunLoopWatch::submit()
{
    int answer = 0;
    do {
        answer = io_uring_submit(&mRing);
    } while (answer == -EINTR);
    if (answer >= 0) return true;
    io_uring_queue_exit(&mRing);
    mWatched.clear();
    return mWorks = false;
}
