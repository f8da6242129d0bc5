#pragma once

/// One `poll` over file descriptors, timers and wake-ups; no work when nothing happens.
///
/// A run loop belongs to the thread that first asked for it. Everything here is called on that thread, except
/// `CFRunLoopWakeUp`, `CFRunLoopPerformBlock` and `CFRunLoopStop`, which any thread may call while it holds the loop
/// alive. A callback may add, remove or invalidate anything, itself included, and may run the loop again. A callback
/// that throws leaves the loop usable: the exception reaches whoever runs the loop, and what else was due stays due.
///
/// A turn does, in this order, what was due when it began: descriptors, blocks, timers by their date; then it calls the
/// observers. So an event of the window, what it posts, and the drawing that follows fit into one turn. Each turn has
/// an autorelease pool of its own.

#include "Foundation/NSObject.h"

#include <atomic>
#include <cstdint>
#include <functional>

using CFTimeInterval = double; ///< seconds
using CFAbsoluteTime = double; ///< seconds of a clock that never goes back; only differences mean something

// The objects behind the handles, complete so that a RetainPtr can hold them; all they can do stands below.
class CFRunLoop : public NSObject {
protected:
    CFRunLoop() = default;
};
class CFRunLoopTimer : public NSObject {
protected:
    CFRunLoopTimer() = default;
};
class CFFileDescriptor : public NSObject {
protected:
    CFFileDescriptor() = default;
};
using CFRunLoopRef = CFRunLoop*;
using CFRunLoopTimerRef = CFRunLoopTimer*;
using CFFileDescriptorRef = CFFileDescriptor*;

using CFRunLoopMode = const char*;
extern const CFRunLoopMode kCFRunLoopDefaultMode; ///< one of the common modes
extern const CFRunLoopMode kCFRunLoopCommonModes; ///< stands for every mode here

enum CFRunLoopRunResult {
    kCFRunLoopRunFinished = 1,
    kCFRunLoopRunStopped,
    kCFRunLoopRunTimedOut,
    kCFRunLoopRunHandledSource
};

/// The run loop of the calling thread, made on first use. It lives until the thread ends; a reference of your own keeps
/// the object longer, but it then holds nothing and drops every block. Null once the thread's own objects are being
/// destroyed; every function here ignores a null loop, timer or descriptor.
CFRunLoopRef CFRunLoopGetCurrent();

/// Runs until `CFRunLoopStop`, or until there is nothing left to wait for.
void CFRunLoopRun();
/// Runs for at most `seconds`; 0 does what is due now, once, and returns, which is what a host's idle call wants. With
/// `returnAfterSourceHandled` it returns after the first turn that called something back (observers don't count).
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, bool returnAfterSourceHandled);
/// Whether the loop's next turn would do something even without a descriptor: a block, a wake-up or a timer is due.
/// For the calling thread's own loop; asks nothing of the system.
bool CFRunLoopIsDue(CFRunLoopRef loop);
/// Ends the innermost run at the end of its turn; where nothing runs, the next run ends after one turn.
void CFRunLoopStop(CFRunLoopRef loop);
/// Has the loop's observers called soon: at the end of the turn where it is called from within one, else in a turn of
/// their own.
void CFRunLoopWakeUp(CFRunLoopRef loop);
/// Calls `block` once on the loop's thread in its next turn, and wakes the loop. Blocks run in the order they came.
void CFRunLoopPerformBlock(CFRunLoopRef loop, CFRunLoopMode mode, std::function<void()> block);
/// Calls `observer` at the end of each turn in which something was due or somebody woke the loop (windows draw there).
/// The answer goes to Remove.
std::uint64_t CFRunLoopAddBeforeWaiting(CFRunLoopRef loop, std::function<void()> observer);
void CFRunLoopRemoveBeforeWaiting(CFRunLoopRef loop, std::uint64_t observer);

/// A timer that fires at `fireTime` and then every `interval` seconds; an interval of 0 fires once and is then invalid,
/// unless its callback set a new date. A timer that fell behind fires once, not several times, and keeps its phase: one
/// due at 10 with interval 2 that fires at 15 fires next at 16. A date or an interval of infinity waits for
/// `SetNextFireDate`, and the loop still counts it as something to wait for. A timer isn't called again while its
/// callback runs.
RetainPtr<CFRunLoopTimer> CFRunLoopTimerCreate(CFAbsoluteTime fireTime, CFTimeInterval interval,
                                               std::function<void()> callback);
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode); ///< the loop retains the timer
/// Never fires again; the loop lets go of it.
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);
void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireTime);

/// Calls back whenever `descriptor` is readable or closed by its peer. The descriptor stays the caller's, who
/// invalidates this before closing it; one that is found closed is let go of without a call, a negative one is never
/// added.
RetainPtr<CFFileDescriptor> CFFileDescriptorCreate(int descriptor, std::function<void()> callback);
void CFRunLoopAddFileDescriptor(CFRunLoopRef loop, CFFileDescriptorRef descriptor, CFRunLoopMode mode);
void CFFileDescriptorInvalidate(CFFileDescriptorRef descriptor);

/// Seconds of the process's clock: the system's monotonic one, unless a test has put its own in place.
CFAbsoluteTime CFAbsoluteTimeGetCurrent();

/// A clock that stands still until it is told to go on; while one exists, it is the process's clock (the newest, if
/// there are several), and a run loop that would wait until some date moves it there instead of sleeping. Descriptors
/// are still looked at first; a loop with nothing but descriptors to wait for waits for them. For tests.
class CFManualClock {
public:
    explicit CFManualClock(CFAbsoluteTime start = 1000.0);
    ~CFManualClock();
    CFManualClock(const CFManualClock&) = delete;
    CFManualClock& operator=(const CFManualClock&) = delete;
    void advance(CFTimeInterval seconds); ///< never back
    void advanceTo(CFAbsoluteTime time);  ///< never back

private:
    friend CFAbsoluteTime CFAbsoluteTimeGetCurrent();
    std::atomic<CFAbsoluteTime> mNow; // other threads read it when they post
    CFManualClock* mPrevious;
};
