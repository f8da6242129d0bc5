#include "CoreFoundation/CFRunLoopPrivate.h"

#include "Foundation/NSAutoreleasePool.h"

#include <algorithm>
#include <limits>

const CFRunLoopMode kCFRunLoopDefaultMode = "kCFRunLoopDefaultMode";
const CFRunLoopMode kCFRunLoopCommonModes = "kCFRunLoopCommonModes";

namespace {

constexpr CFAbsoluteTime kNever = std::numeric_limits<CFAbsoluteTime>::infinity();

// Trivial, so that it can still be read while the thread's other objects are being destroyed.
thread_local bool gThreadEnded = false;
// The loop of this thread while it calls what is due; its observers come after that anyway.
thread_local const CFRunLoop* gCallingLoop = nullptr;

struct ThreadLoop {
    RetainPtr<RunLoop> loop = make<RunLoop>();
    ~ThreadLoop()
    {
        gThreadEnded = true;
        loop->close();
    }
};

template <typename T> void Append(std::vector<RetainPtr<T>>& list, T* object, RunLoop* loop)
{
    if (!object->callback || object->loop) return;
    list.emplace_back(object);
    object->loop = loop;
}

template <typename T> void Remove(std::vector<RetainPtr<T>>& list, T* object)
{
    const RetainPtr<T> keep(object);
    object->loop = nullptr;
    std::erase_if(list, [object](const auto& entry) { return entry.get() == object; });
}

template <typename T> void RemoveAll(std::vector<RetainPtr<T>>& list)
{
    const auto dropped = std::exchange(list, {});
    for (const auto& object : dropped) object->loop = nullptr;
}

} // namespace

CFRunLoopRunResult RunLoop::run(CFTimeInterval seconds, bool returnAfterSourceHandled)
{
    if (!(seconds > 0.0) && isAtRest()) return kCFRunLoopRunTimedOut;
    const RetainPtr<RunLoop> keep(this);
    CFAbsoluteTime waitUntil = CFAbsoluteTimeGetCurrent(); // the first turn doesn't wait
    const CFAbsoluteTime end = waitUntil + (seconds > 0.0 ? seconds : 0.0);
    for (;;) {
        const bool handled = turn(waitUntil);
        if (mailbox.takeStop()) return kCFRunLoopRunStopped;
        if (handled && returnAfterSourceHandled) return kCFRunLoopRunHandledSource;
        if (hasNothingToWaitFor()) return kCFRunLoopRunFinished;
        if (CFAbsoluteTimeGetCurrent() >= end) return kCFRunLoopRunTimedOut;
        waitUntil = std::min(end, nextFireTime());
    }
}

bool RunLoop::turn(CFAbsoluteTime waitUntil)
{
    struct Calling {
        RunLoop* loop;
        const CFRunLoop* outer = std::exchange(gCallingLoop, loop);
        bool ended = false;
        ~Calling()
        {
            gCallingLoop = outer;
            if (!ended) loop->mailbox.wakeUp(); // an exception: the observers come with the next turn
        }
    };
    const Arrival arrived = wait(waitUntil);
    mRestsUntil = nextFireTime();
    if (arrived.ready.empty() && !arrived.isWoken && mRestsUntil > CFAbsoluteTimeGetCurrent()) return false;
    const NSAutoreleasePool pool;
    bool handled = false;
    {
        Calling calling{this};
        handled = callDescriptors(arrived.ready);
        handled |= runBlocks();
        handled |= fireTimers();
        calling.ended = true;
    }
    callObservers();
    mRestsUntil = nextFireTime();
    return handled;
}

RunLoop::Arrival RunLoop::wait(CFAbsoluteTime until)
{
    mPolled.clear();
    for (const auto& entry : mDescriptors) mPolled.push_back({entry->descriptor, POLLIN, 0});
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    const bool waits = until > now && !mailbox.isAwake(); // the mailbox' descriptor is there to end a wait
    if (waits) mPolled.push_back({mailbox.descriptor(), POLLIN, 0});
    mIsQuiet = !waits && !mPolled.empty() && isQuiet();
    const bool any = !mIsQuiet && CFPollUntil(mPolled, waits ? until : now) > 0;
    const bool isSignalled = any && waits && mPolled.back().revents;
    Arrival arrived;
    arrived.isWoken = mailbox.isAwake() || isSignalled;
    if (arrived.isWoken) mailbox.clearWakeUp(isSignalled);
    if (any) arrived.ready = takeReady();
    return arrived;
}

/// Hosts look in dozens of times a second, mostly for nothing: this is all that happens then.
bool RunLoop::isAtRest() const
{
    if (!mIsQuiet || mailbox.isAwake() || !mWatch->isStillQuiet()) return false;
    return mRestsUntil == kNever || mRestsUntil > CFAbsoluteTimeGetCurrent();
}

/// Whether a look at the descriptors would find nothing.
bool RunLoop::isQuiet()
{
    if (!mWatch) mWatch = std::make_unique<RunLoopWatch>();
    return mWatch->isQuiet(mPolled);
}

RunLoop::Descriptors RunLoop::takeReady()
{
    Descriptors ready;
    Descriptors closed;
    for (std::size_t i = 0; i < mDescriptors.size(); ++i) {
        if (mPolled[i].revents & POLLNVAL)
            closed.push_back(mDescriptors[i]);
        else if (mPolled[i].revents)
            ready.push_back(mDescriptors[i]);
    }
    for (const auto& entry : closed) entry->invalidate();
    return ready;
}

bool RunLoop::callDescriptors(const Descriptors& ready)
{
    bool handled = false;
    for (const auto& entry : ready) {
        if (entry->loop != this) continue;
        const CFCallback callback = entry->callback;
        (*callback)();
        handled = true;
    }
    return handled;
}

bool RunLoop::runBlocks()
{
    const std::size_t count = mailbox.count(); // those that a block adds wait for the next turn
    std::size_t done = 0;
    for (std::function<void()> block; done < count && mailbox.takeBlock(block); ++done) block();
    return done > 0;
}

bool RunLoop::fireTimers()
{
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    std::vector<RetainPtr<RunLoopTimer>> due;
    std::copy_if(mTimers.begin(), mTimers.end(), std::back_inserter(due),
                 [now](const auto& timer) { return timer->isDue(now); });
    std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a->fireTime < b->fireTime; });
    bool handled = false;
    for (const auto& timer : due) {
        if (timer->loop != this || !timer->isDue(now)) continue;
        timer->fire(now);
        handled = true;
    }
    return handled;
}

void RunLoop::callObservers()
{
    const std::vector<Observer> observers = mObservers;
    for (const Observer& observer : observers) {
        const bool isThere = std::any_of(mObservers.begin(), mObservers.end(),
                                         [&](const Observer& entry) { return entry.id == observer.id; });
        if (isThere) (*observer.callback)();
    }
}

bool RunLoop::hasNothingToWaitFor() { return mTimers.empty() && mDescriptors.empty() && mailbox.count() == 0; }

CFAbsoluteTime RunLoop::nextFireTime() const
{
    CFAbsoluteTime next = kNever;
    for (const auto& timer : mTimers)
        if (!timer->firing) next = std::min(next, timer->fireTime);
    return next;
}

void RunLoop::close()
{
    mClosed = true;
    RemoveAll(mTimers);
    RemoveAll(mDescriptors);
    mIsQuiet = false;
    mWatch.reset();
    std::exchange(mObservers, {}).clear();
    mailbox.close();
}

void RunLoop::add(RunLoopTimer* timer)
{
    if (mClosed) return;
    Append(mTimers, timer, this);
    timerMoved(timer->fireTime);
}

void RunLoop::add(RunLoopDescriptor* descriptor)
{
    if (mClosed || descriptor->descriptor < 0) return;
    Append(mDescriptors, descriptor, this);
    mIsQuiet = false;
}

void RunLoop::remove(RunLoopTimer* timer) { Remove(mTimers, timer); }

void RunLoop::remove(RunLoopDescriptor* descriptor)
{
    mIsQuiet = false; // there may be nothing left to wait for
    if (mWatch) mWatch->forget(descriptor->descriptor);
    Remove(mDescriptors, descriptor);
}

std::uint64_t RunLoop::addObserver(std::function<void()> observer)
{
    mObservers.push_back({++mLastObserver, std::make_shared<const std::function<void()>>(std::move(observer))});
    return mLastObserver;
}

void RunLoop::removeObserver(std::uint64_t observer)
{
    CFCallback removed; // ends after the list is whole again
    std::erase_if(mObservers, [&](Observer& entry) {
        if (entry.id != observer) return false;
        removed = std::move(entry.callback);
        return true;
    });
}

CFRunLoopRef CFRunLoopGetCurrent()
{
    if (gThreadEnded) return nullptr;
    static thread_local const ThreadLoop current;
    return current.loop.get();
}

void CFRunLoopRun()
{
    if (RunLoop* loop = Own(CFRunLoopGetCurrent())) loop->run(kNever, false);
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode, CFTimeInterval seconds, bool returnAfterSourceHandled)
{
    RunLoop* loop = Own(CFRunLoopGetCurrent());
    return loop ? loop->run(seconds, returnAfterSourceHandled) : kCFRunLoopRunFinished;
}

bool CFRunLoopIsDue(CFRunLoopRef loop) { return loop && Own(loop)->isDue(); }

void CFRunLoopStop(CFRunLoopRef loop)
{
    if (loop) Own(loop)->mailbox.stop();
}

void CFRunLoopWakeUp(CFRunLoopRef loop)
{
    if (loop && loop != gCallingLoop) Own(loop)->mailbox.wakeUp();
}

void CFRunLoopPerformBlock(CFRunLoopRef loop, CFRunLoopMode, std::function<void()> block)
{
    if (loop && block) Own(loop)->mailbox.perform(std::move(block));
}

std::uint64_t CFRunLoopAddBeforeWaiting(CFRunLoopRef loop, std::function<void()> observer)
{
    return loop && observer ? Own(loop)->addObserver(std::move(observer)) : 0;
}

void CFRunLoopRemoveBeforeWaiting(CFRunLoopRef loop, std::uint64_t observer)
{
    if (loop) Own(loop)->removeObserver(observer);
}
