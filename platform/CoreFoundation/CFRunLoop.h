#pragma once

/// One `poll` over file descriptors, timers and wake-ups; no work when nothing happens.
///
/// A run loop belongs to the thread that first asked for it. Everything here is called on that thread, except
/// `CFRunLoopWakeUp`, `CFRunLoopPerformBlock` and `CFRunLoopStop`, which any thread may call. A callback may add, remove or invalidate
/// anything, itself included. A callback that throws leaves the loop usable; the exception reaches whoever runs the loop.
///
/// Each turn has an autorelease pool of its own.

#include "Foundation/NSObject.h"

#include <functional>

using CFTimeInterval = double; ///< seconds
using CFAbsoluteTime = double; ///< seconds of a clock that never goes back; only differences mean something

class CFRunLoop;
class CFRunLoopTimer;
class CFFileDescriptor;
using CFRunLoopRef = CFRunLoop*;
using CFRunLoopTimerRef = CFRunLoopTimer*;
using CFFileDescriptorRef = CFFileDescriptor*;

using CFRunLoopMode = const char*;
extern const CFRunLoopMode kCFRunLoopDefaultMode; ///< one of the common modes
extern const CFRunLoopMode kCFRunLoopCommonModes; ///< stands for every mode here

enum CFRunLoopRunResult { kCFRunLoopRunFinished = 1, kCFRunLoopRunStopped, kCFRunLoopRunTimedOut, kCFRunLoopRunHandledSource };

/// The run loop of the calling thread, made on first use. It lives until the thread ends; a reference of your own keeps it longer.
CFRunLoopRef CFRunLoopGetCurrent();

/// Runs until `CFRunLoopStop`, or until there is nothing left to wait for.
void CFRunLoopRun();
/// Runs for at most `seconds`; 0 does what is due now and returns. With `returnAfterSourceHandled` it returns after the first
/// turn that called something back.
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, bool returnAfterSourceHandled);
void CFRunLoopStop(CFRunLoopRef loop);
void CFRunLoopWakeUp(CFRunLoopRef loop);
/// Calls `block` once on the loop's thread in its next turn, and wakes the loop.
void CFRunLoopPerformBlock(CFRunLoopRef loop, CFRunLoopMode mode, std::function<void()> block);
/// Calls `observer` at the end of each turn, before the loop waits (windows draw there). The answer goes to Remove.
std::uint64_t CFRunLoopAddBeforeWaiting(CFRunLoopRef loop, std::function<void()> observer);
void CFRunLoopRemoveBeforeWaiting(CFRunLoopRef loop, std::uint64_t observer);

/// A timer that fires at `fireTime` and then every `interval` seconds; an interval of 0 fires once. A timer that fell behind fires
/// once, not several times.
RetainPtr<CFRunLoopTimer> CFRunLoopTimerCreate(CFAbsoluteTime fireTime, CFTimeInterval interval, std::function<void()> callback);
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode); ///< the loop retains the timer
/// Never fires again; the loop lets go of it.
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);
void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireTime);

/// Calls back whenever `descriptor` is readable or closed by its peer. The descriptor stays the caller's.
RetainPtr<CFFileDescriptor> CFFileDescriptorCreate(int descriptor, std::function<void()> callback);
void CFRunLoopAddFileDescriptor(CFRunLoopRef loop, CFFileDescriptorRef descriptor, CFRunLoopMode mode);
void CFFileDescriptorInvalidate(CFFileDescriptorRef descriptor);

/// Seconds of the process's clock: the system's monotonic one, unless a test has put its own in place.
CFAbsoluteTime CFAbsoluteTimeGetCurrent();

/// A clock that stands still until it is told to go on; while one exists, it is the process's clock, and a run loop that would wait
/// for a timer moves it forward instead of sleeping. For tests.
class CFManualClock {
public:
    explicit CFManualClock(CFAbsoluteTime start = 1000.0);
    ~CFManualClock();
    CFManualClock(const CFManualClock&) = delete;
    CFManualClock& operator=(const CFManualClock&) = delete;
    void advance(CFTimeInterval seconds);

private:
    friend CFAbsoluteTime CFAbsoluteTimeGetCurrent();
    CFAbsoluteTime mNow;
};
