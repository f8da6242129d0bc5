#include "CoreFoundation/CFRunLoopPrivate.h"

#include <cerrno>
#include <system_error>

#include <sys/eventfd.h>
#include <unistd.h>

RunLoopMailbox::RunLoopMailbox() : mEvent(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    if (mEvent < 0) throw std::system_error(errno, std::generic_category(), "wake-up descriptor of a run loop");
}

RunLoopMailbox::~RunLoopMailbox() { ::close(mEvent); }

void RunLoopMailbox::perform(std::function<void()> block)
{
    {
        const std::lock_guard lock(mMutex);
        if (mClosed) return;
        mBlocks.push_back(std::move(block));
    }
    wakeUp();
}

void RunLoopMailbox::stop()
{
    mStopped = true;
    wakeUp();
}

void RunLoopMailbox::wakeUp()
{
    if (mAwake.exchange(true)) return; // a wake-up that the loop hasn't seen is enough
    if (std::this_thread::get_id() == mOwner) return;
    mSignalled = true;
    while (eventfd_write(mEvent, 1) < 0 && errno == EINTR) {
    }
}

void RunLoopMailbox::clearWakeUp(bool isReadable)
{
    eventfd_t count = 0;
    const bool mustRead = mSignalled.exchange(false) || isReadable;
    while (mustRead && eventfd_read(mEvent, &count) < 0 && errno == EINTR) {
    }
    mAwake = false; // whoever still saw the old value posted before the loop looks for what was posted
}

std::size_t RunLoopMailbox::count()
{
    const std::lock_guard lock(mMutex);
    return mBlocks.size();
}

bool RunLoopMailbox::takeBlock(std::function<void()>& block)
{
    const std::lock_guard lock(mMutex);
    if (mBlocks.empty()) return false;
    block = std::move(mBlocks.front());
    mBlocks.pop_front();
    return true;
}

void RunLoopMailbox::close()
{
    std::deque<std::function<void()>> dropped; // ends outside the lock: what the blocks hold may post again
    const std::lock_guard lock(mMutex);
    mClosed = true;
    mBlocks.swap(dropped);
}
