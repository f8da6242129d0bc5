#include "CoreFoundation/CFRunLoopPrivate.h"

#include <cmath>
#include <limits>

namespace {

constexpr CFAbsoluteTime kNever = std::numeric_limits<CFAbsoluteTime>::infinity();

CFAbsoluteTime DateOrNever(CFAbsoluteTime date) { return std::isnan(date) ? kNever : date; }

CFCallback SharedCallback(std::function<void()> callback)
{
    return callback ? std::make_shared<const std::function<void()>>(std::move(callback)) : nullptr;
}

} // namespace

void RunLoopTimer::fire(CFAbsoluteTime now)
{
    struct Firing {
        RunLoopTimer& timer;
        ~Firing()
        {
            timer.firing = false;
            if (timer.interval == 0.0 && timer.fireTime == kNever) timer.invalidate();
        }
    };
    const CFCallback called = callback;
    const Firing firingNow{*this};
    firing = true;
    fireTime = dateAfter(now);
    (*called)();
}

CFAbsoluteTime RunLoopTimer::dateAfter(CFAbsoluteTime now) const
{
    if (interval == 0.0 || std::isinf(interval)) return kNever;
    const CFAbsoluteTime inPhase = fireTime + interval * (std::floor((now - fireTime) / interval) + 1.0);
    return std::isfinite(inPhase) && inPhase > now ? inPhase : now + interval;
}

void RunLoopTimer::invalidate()
{
    const CFCallback dropped = std::exchange(callback, nullptr);
    if (loop) loop->remove(this);
}

void RunLoopDescriptor::invalidate()
{
    const CFCallback dropped = std::exchange(callback, nullptr);
    if (loop) loop->remove(this);
}

RetainPtr<CFRunLoopTimer> CFRunLoopTimerCreate(CFAbsoluteTime fireTime, CFTimeInterval interval,
                                               std::function<void()> callback)
{
    auto timer = make<RunLoopTimer>();
    timer->fireTime = DateOrNever(fireTime);
    timer->interval = interval > 0.0 ? interval : 0.0;
    timer->callback = SharedCallback(std::move(callback));
    return timer;
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode)
{
    if (loop && timer) Own(loop)->add(Own(timer));
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer)
{
    if (timer) Own(timer)->invalidate();
}

void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireTime)
{
    if (!timer) return;
    Own(timer)->fireTime = DateOrNever(fireTime);
    if (RunLoop* loop = Own(timer)->loop) loop->timerMoved(Own(timer)->fireTime);
}

RetainPtr<CFFileDescriptor> CFFileDescriptorCreate(int descriptor, std::function<void()> callback)
{
    auto source = make<RunLoopDescriptor>();
    source->descriptor = descriptor;
    source->callback = SharedCallback(std::move(callback));
    return source;
}

void CFRunLoopAddFileDescriptor(CFRunLoopRef loop, CFFileDescriptorRef descriptor, CFRunLoopMode)
{
    if (loop && descriptor) Own(loop)->add(Own(descriptor));
}

void CFFileDescriptorInvalidate(CFFileDescriptorRef descriptor)
{
    if (descriptor) Own(descriptor)->invalidate();
}
