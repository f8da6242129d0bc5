#pragma once

/// What stands behind the run loop's handles. For the sources of this folder only.

#include "CoreFoundation/CFRunLoop.h"

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include <poll.h>

/// A callback that stays whole while it runs, even when its owner lets go of it meanwhile.
using CFCallback = std::shared_ptr<const std::function<void()>>;

class CFRunLoopTimer final : public NSObject {
public:
    void fire(CFAbsoluteTime now);
    void invalidate();
    bool isDue(CFAbsoluteTime now) const { return loop && !firing && fireTime <= now; }

    CFAbsoluteTime fireTime = 0.0;
    CFTimeInterval interval = 0.0; ///< 0 fires once
    CFCallback callback;           ///< empty once the timer is invalid
    CFRunLoop* loop = nullptr;     ///< not owned; the loop clears it when it ends
    bool firing = false;

private:
    CFAbsoluteTime dateAfter(CFAbsoluteTime now) const;
};

class CFFileDescriptor final : public NSObject {
public:
    void invalidate();

    int descriptor = -1;
    CFCallback callback; ///< empty once invalid
    CFRunLoop* loop = nullptr;
};

/// The one part of a loop that other threads touch.
class CFRunLoopMailbox {
public:
    CFRunLoopMailbox();
    ~CFRunLoopMailbox();
    CFRunLoopMailbox(const CFRunLoopMailbox&) = delete;
    CFRunLoopMailbox& operator=(const CFRunLoopMailbox&) = delete;

    void perform(std::function<void()> block);
    void stop();
    void wakeUp();

    // The loop's own side.
    int descriptor() const { return mEvent; } ///< readable after a wake-up
    void clearWakeUp();
    std::size_t count();
    bool takeBlock(std::function<void()>& block);
    bool takeStop() { return mStopped.exchange(false); }
    void close(); ///< drops all blocks, and those that come later

private:
    std::mutex mMutex;
    std::deque<std::function<void()>> mBlocks;
    bool mClosed = false;
    std::atomic<bool> mStopped = false;
    int mEvent; // an eventfd
};

class CFRunLoop final : public NSObject {
public:
    ~CFRunLoop() override { close(); }

    CFRunLoopRunResult run(CFTimeInterval seconds, bool returnAfterSourceHandled);
    void close(); ///< the thread ends
    void add(CFRunLoopTimer* timer);
    void add(CFFileDescriptor* descriptor);
    void remove(CFRunLoopTimer* timer);
    void remove(CFFileDescriptor* descriptor);
    std::uint64_t addObserver(std::function<void()> observer);
    void removeObserver(std::uint64_t observer);

    CFRunLoopMailbox mailbox;

private:
    struct Observer {
        std::uint64_t id;
        CFCallback callback;
    };
    using Descriptors = std::vector<RetainPtr<CFFileDescriptor>>;

    bool turn(CFAbsoluteTime waitUntil);
    Descriptors waitForDescriptors(CFAbsoluteTime until);
    bool callDescriptors(const Descriptors& ready);
    bool runBlocks();
    bool fireTimers();
    void callObservers();
    bool hasNothingToWaitFor();
    CFAbsoluteTime nextFireTime() const;

    std::vector<RetainPtr<CFRunLoopTimer>> mTimers;
    Descriptors mDescriptors;
    std::vector<Observer> mObservers;
    std::uint64_t mLastObserver = 0;
    bool mClosed = false;
};

/// `poll` until that date of the process's clock. @return how many are ready; 0 also after a signal
int CFPollUntil(std::vector<pollfd>& descriptors, CFAbsoluteTime until);
