#include "AudioUnit/AUEventListener.h"

#include "AudioUnit/AUEventQueue.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace {

constexpr CFAbsoluteTime kNever = std::numeric_limits<CFAbsoluteTime>::infinity();

/// Every listener of the process, and the one lock that guards them and their queues. It is held while a few records
/// are copied, never while somebody is called.
struct Listeners {
    std::mutex mutex;
    std::vector<std::shared_ptr<AUListenerBase>> all;
    /// Those that registered something of a unit: who posts doesn't go through the listeners of a hundred others.
    std::unordered_map<AudioUnit, std::vector<std::shared_ptr<AUListenerBase>>> ofUnit;
};

Listeners& AllListeners()
{
    // never destroyed: a thread that outlives `main` may still post
    static Listeners& listeners = *new Listeners;
    return listeners;
}

} // namespace

struct AUListenerBase : std::enable_shared_from_this<AUListenerBase> {
    void start(CFRunLoopMode mode);
    void schedule();
    void arm();
    void deliver();
    std::optional<AUEventQueue::Call> nextCall(std::uint64_t mark);
    void endRound(CFAbsoluteTime start);

    AUEventListenerProc callback = nullptr;
    void* userData = nullptr;
    CFTimeInterval interval = 0.0;
    RetainPtr<CFRunLoop> loop; // this and the timer are let go of on the loop's thread, by AUListenerDispose
    RetainPtr<CFRunLoopTimer> timer;
    CFAbsoluteTime lastRound = -kNever; // touched on the loop's thread only

    // Under the lock of all listeners.
    AUEventQueue queue;
    bool scheduled = false; ///< the timer will fire, or a block is on its way to set it
    bool disposed = false;
};

namespace {

std::shared_ptr<AUListenerBase> Find(Listeners& listeners, const AUListenerBase* listener)
{
    const auto found = std::find_if(listeners.all.begin(), listeners.all.end(),
                                    [listener](const auto& entry) { return entry.get() == listener; });
    return found == listeners.all.end() ? nullptr : *found;
}

std::uint64_t HostTime() { return static_cast<std::uint64_t>(std::max(CFAbsoluteTimeGetCurrent(), 0.0) * 1e9); }

std::uint64_t DrawTicket()
{
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

AudioUnit UnitOf(const AudioUnitEvent& event)
{
    const bool isProperty = event.mEventType == kAudioUnitEvent_PropertyChange;
    return isProperty ? event.mArgument.mProperty.mAudioUnit : event.mArgument.mParameter.mAudioUnit;
}

void Post(AUEventListenerRef sendingListener, void* sendingObject, AUPostedEvent posted)
{
    Listeners& listeners = AllListeners();
    const std::lock_guard lock(listeners.mutex);
    const auto found = listeners.ofUnit.find(UnitOf(posted.event));
    if (found == listeners.ofUnit.end()) return;
    for (const auto& listener : found->second) {
        posted.sentFor = listener.get() == sendingListener ? std::optional(sendingObject) : std::nullopt;
        listener->queue.post(posted);
        listener->schedule();
    }
}

OSStatus PostValue(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitEvent& event)
{
    const AudioUnitParameter& parameter = event.mArgument.mParameter;
    AUPostedEvent posted{event, 0.0f, HostTime(), DrawTicket(), {}};
    const OSStatus status = AudioUnitGetParameter(parameter.mAudioUnit, parameter.mParameterID, parameter.mScope,
                                                  parameter.mElement, &posted.value);
    if (status == noErr) Post(sendingListener, sendingObject, posted);
    return status;
}

OSStatus PostGesture(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitEvent& event)
{
    const AudioUnitParameter& parameter = event.mArgument.mParameter;
    const bool begins = event.mEventType == kAudioUnitEvent_BeginParameterChangeGesture;
    // what the unit tells because of a gesture that ends comes after the end, and isn't part of it
    if (!begins) Post(sendingListener, sendingObject, {event, 0.0f, HostTime(), 0, {}});
    parameter.mAudioUnit->ParameterGesture(parameter.mParameterID, parameter.mScope, parameter.mElement, begins);
    if (begins) Post(sendingListener, sendingObject, {event, 0.0f, HostTime(), 0, {}});
    return noErr;
}

bool IsValid(const AudioUnitEvent* event)
{
    if (!event) return false;
    switch (event->mEventType) {
    case kAudioUnitEvent_ParameterValueChange:
    case kAudioUnitEvent_BeginParameterChangeGesture:
    case kAudioUnitEvent_EndParameterChangeGesture:
        return event->mArgument.mParameter.mAudioUnit != nullptr;
    case kAudioUnitEvent_PropertyChange:
        return event->mArgument.mProperty.mAudioUnit != nullptr;
    }
    return false;
}

/// The pace of a listener; not-a-number where the two times make none. All that is pending goes in one round, so the
/// longer of the two times keeps both promises.
CFTimeInterval PaceOf(float notificationInterval, float valueChangeGranularity)
{
    const bool valid = std::isfinite(notificationInterval) && std::isfinite(valueChangeGranularity) &&
                       notificationInterval >= 0.0f && valueChangeGranularity >= 0.0f;
    return valid ? double(std::max(notificationInterval, valueChangeGranularity)) : std::nan("");
}

} // namespace

void AUListenerBase::start(CFRunLoopMode mode)
{
    timer = CFRunLoopTimerCreate(kNever, kNever, [weak = weak_from_this()] {
        if (const auto listener = weak.lock()) listener->deliver();
    });
    CFRunLoopAddTimer(loop, timer, mode);
}

/// Called with the lock held, on any thread.
void AUListenerBase::schedule()
{
    if (scheduled || queue.empty()) return;
    scheduled = true;
    CFRunLoopPerformBlock(loop, kCFRunLoopCommonModes, [weak = weak_from_this()] {
        if (const auto listener = weak.lock()) listener->arm();
    });
}

void AUListenerBase::arm()
{
    CFRunLoopTimerSetNextFireDate(timer, std::max(CFAbsoluteTimeGetCurrent(), lastRound + interval));
}

void AUListenerBase::deliver()
{
    struct Round {
        AUListenerBase& listener;
        CFAbsoluteTime start = CFAbsoluteTimeGetCurrent();
        ~Round() { listener.endRound(start); }
    };
    const auto keep = shared_from_this();
    const Round round{*this};
    std::uint64_t mark = 0;
    {
        const std::lock_guard lock(AllListeners().mutex);
        mark = queue.mark(); // what the callbacks post waits for the next round
    }
    while (const auto call = nextCall(mark))
        callback(userData, call->object, &call->posted.event, call->posted.hostTime, call->posted.value);
}

std::optional<AUEventQueue::Call> AUListenerBase::nextCall(std::uint64_t mark)
{
    const std::lock_guard lock(AllListeners().mutex);
    return disposed ? std::nullopt : queue.next(mark);
}

void AUListenerBase::endRound(CFAbsoluteTime start)
{
    const std::lock_guard lock(AllListeners().mutex);
    lastRound = start;
    scheduled = !queue.empty();
    if (scheduled) arm();
}

OSStatus AUEventListenerCreate(AUEventListenerProc callback, void* userData, CFRunLoopRef runLoop, CFRunLoopMode mode,
                               float notificationInterval, float valueChangeGranularity,
                               AUEventListenerRef* outListener)
{
    if (!outListener) return kAudio_ParamError;
    *outListener = nullptr;
    const CFTimeInterval pace = PaceOf(notificationInterval, valueChangeGranularity);
    if (!callback || !runLoop || std::isnan(pace)) return kAudio_ParamError;

    const auto listener = std::make_shared<AUListenerBase>();
    listener->callback = callback;
    listener->userData = userData;
    listener->interval = pace;
    listener->loop = runLoop;
    listener->start(mode);
    Listeners& listeners = AllListeners();
    const std::lock_guard lock(listeners.mutex);
    listeners.all.push_back(listener);
    *outListener = listener.get();
    return noErr;
}

OSStatus AUListenerDispose(AUEventListenerRef listener)
{
    Listeners& listeners = AllListeners();
    std::shared_ptr<AUListenerBase> ended;
    {
        const std::lock_guard lock(listeners.mutex);
        ended = Find(listeners, listener);
        if (!ended) return kAudio_ParamError;
        std::erase(listeners.all, ended);
        for (auto& entry : listeners.ofUnit) std::erase(entry.second, ended);
        std::erase_if(listeners.ofUnit, [](const auto& entry) { return entry.second.empty(); });
        ended->disposed = true;
        ended->queue.clear();
    }
    CFRunLoopTimerInvalidate(ended->timer);
    return noErr;
}

OSStatus AUEventListenerAddEventType(AUEventListenerRef listener, void* object, const AudioUnitEvent* event)
{
    if (!IsValid(event)) return kAudio_ParamError;
    Listeners& listeners = AllListeners();
    const std::lock_guard lock(listeners.mutex);
    const auto found = Find(listeners, listener);
    if (!found) return kAudio_ParamError;
    found->queue.add(object, *event);
    auto& ofUnit = listeners.ofUnit[UnitOf(*event)];
    if (std::find(ofUnit.begin(), ofUnit.end(), found) == ofUnit.end()) ofUnit.push_back(found);
    return noErr;
}

OSStatus AUEventListenerNotify(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitEvent* event)
{
    if (!IsValid(event)) return kAudio_ParamError;
    switch (event->mEventType) {
    case kAudioUnitEvent_ParameterValueChange:
        return PostValue(sendingListener, sendingObject, *event);
    case kAudioUnitEvent_BeginParameterChangeGesture:
    case kAudioUnitEvent_EndParameterChangeGesture:
        return PostGesture(sendingListener, sendingObject, *event);
    case kAudioUnitEvent_PropertyChange:
        break;
    }
    Post(sendingListener, sendingObject, {*event, 0.0f, HostTime(), 0, {}});
    return noErr;
}

OSStatus AUParameterSet(AUEventListenerRef sendingListener, void* sendingObject, const AudioUnitParameter* parameter,
                        AudioUnitParameterValue value, std::uint32_t bufferOffset)
{
    if (!parameter) return kAudio_ParamError;
    const OSStatus status = AudioUnitSetParameter(parameter->mAudioUnit, parameter->mParameterID, parameter->mScope,
                                                  parameter->mElement, value, bufferOffset);
    if (status != noErr) return status;
    return PostValue(sendingListener, sendingObject, {kAudioUnitEvent_ParameterValueChange, {*parameter}});
}

std::size_t AUEventListenerCountEventTypes(AUEventListenerRef listener)
{
    Listeners& listeners = AllListeners();
    const std::lock_guard lock(listeners.mutex);
    const auto found = Find(listeners, listener);
    return found ? found->queue.countRegistrations() : 0;
}

bool AUEventListenersArePending()
{
    Listeners& listeners = AllListeners();
    const std::lock_guard lock(listeners.mutex);
    return std::any_of(listeners.all.begin(), listeners.all.end(),
                       [](const auto& listener) { return !listener->queue.empty(); });
}
