#pragma once

/// What stands behind the run loop's handles. For the sources of this folder only.

#include "CoreFoundation/CFRunLoop.h"
#include "CoreFoundation/CFRunLoopWatch.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <poll.h>

/// A callback that stays whole while it runs, even when its owner lets go of it meanwhile.
using CFCallback = std::shared_ptr<const std::function<void()>>;

class RunLoop;

class RunLoopTimer final : public CFRunLoopTimer {
public:
    void fire(CFAbsoluteTime now);
    void invalidate();
    bool isDue(CFAbsoluteTime now) const { return loop && !firing && fireTime <= now; }

    CFAbsoluteTime fireTime = 0.0;
    CFTimeInterval interval = 0.0; ///< 0 fires once
    CFCallback callback;           ///< empty once the timer is invalid
    RunLoop* loop = nullptr;       ///< not owned; the loop clears it when it ends
    bool firing = false;

private:
    CFAbsoluteTime dateAfter(CFAbsoluteTime now) const;
};

class RunLoopDescriptor final : public CFFileDescriptor {
public:
    void invalidate();

    int descriptor = -1;
    CFCallback callback; ///< empty once invalid
    RunLoop* loop = nullptr;
};

/// The one part of a loop that other threads touch.
class RunLoopMailbox {
public:
    RunLoopMailbox();
    ~RunLoopMailbox();
    RunLoopMailbox(const RunLoopMailbox&) = delete;
    RunLoopMailbox& operator=(const RunLoopMailbox&) = delete;

    void perform(std::function<void()> block);
    void stop();
    /// From the loop's own thread, which isn't waiting then, this asks nothing of the system.
    void wakeUp();

    // The loop's own side.
    int descriptor() const { return mEvent; } ///< readable after a wake-up
    void clearWakeUp(bool isReadable);
    std::size_t count();
    bool takeBlock(std::function<void()>& block);
    bool isAwake() const { return mAwake; } ///< something was posted that the loop hasn't looked at
    bool takeStop() { return mStopped.exchange(false); }
    void close(); ///< drops all blocks, and those that come later

private:
    std::mutex mMutex;
    std::deque<std::function<void()>> mBlocks;
    bool mClosed = false;
    std::atomic<bool> mStopped = false, mAwake = false;
    std::atomic<bool> mSignalled = false; // the descriptor is, or soon will be, readable
    const std::thread::id mOwner = std::this_thread::get_id();
    int mEvent; // an eventfd
};

class RunLoop final : public CFRunLoop {
public:
    ~RunLoop() override { close(); }

    CFRunLoopRunResult run(CFTimeInterval seconds, bool returnAfterSourceHandled);
    bool isDue() const { return mailbox.isAwake() || nextFireTime() <= CFAbsoluteTimeGetCurrent(); }
    void close(); ///< the thread ends
    void add(RunLoopTimer* timer);
    void add(RunLoopDescriptor* descriptor);
    void timerMoved(CFAbsoluteTime fireTime) { mRestsUntil = std::min(mRestsUntil, fireTime); }
    void remove(RunLoopTimer* timer);
    void remove(RunLoopDescriptor* descriptor);
    std::uint64_t addObserver(std::function<void()> observer);
    void removeObserver(std::uint64_t observer);

    RunLoopMailbox mailbox;

private:
    struct Observer {
        std::uint64_t id;
        CFCallback callback;
    };
    using Descriptors = std::vector<RetainPtr<RunLoopDescriptor>>;

    bool turn(CFAbsoluteTime waitUntil);
    /// What ended a wait.
    struct Arrival {
        Descriptors ready;
        bool isWoken = false;
    };
    Arrival wait(CFAbsoluteTime until);
    bool isAtRest() const;
    bool isQuiet();
    Descriptors takeReady();
    bool callDescriptors(const Descriptors& ready);
    bool runBlocks();
    bool fireTimers();
    void callObservers();
    bool hasNothingToWaitFor();
    CFAbsoluteTime nextFireTime() const;

    std::vector<RetainPtr<RunLoopTimer>> mTimers;
    Descriptors mDescriptors;
    std::vector<Observer> mObservers;
    std::vector<pollfd> mPolled;          // of the last look at the descriptors
    std::unique_ptr<RunLoopWatch> mWatch; // made with the first look
    bool mIsQuiet = false;                // the last look found all of them watched, and nothing to read
    CFAbsoluteTime mRestsUntil = 0.0;     // no timer fires before
    std::uint64_t mLastObserver = 0;
    bool mClosed = false;
};

// Every object behind a handle was made in this folder.
inline RunLoop* Own(CFRunLoopRef loop) { return static_cast<RunLoop*>(loop); }
inline RunLoopTimer* Own(CFRunLoopTimerRef timer) { return static_cast<RunLoopTimer*>(timer); }
inline RunLoopDescriptor* Own(CFFileDescriptorRef descriptor) { return static_cast<RunLoopDescriptor*>(descriptor); }

/// `poll` until that date of the process's clock. @return how many are ready; 0 also after a signal
int CFPollUntil(std::vector<pollfd>& descriptors, CFAbsoluteTime until);
