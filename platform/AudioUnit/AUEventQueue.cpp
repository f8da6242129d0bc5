#include "AudioUnit/AUEventQueue.h"

#include <algorithm>
#include <ranges>

namespace {

bool IsProperty(const AudioUnitEvent& event) { return event.mEventType == kAudioUnitEvent_PropertyChange; }

bool IsGesture(const AudioUnitEvent& event)
{
    return event.mEventType == kAudioUnitEvent_BeginParameterChangeGesture ||
           event.mEventType == kAudioUnitEvent_EndParameterChangeGesture;
}

/// Whether both are about the same parameter, or the same property.
bool SameSubject(const AudioUnitEvent& a, const AudioUnitEvent& b)
{
    if (IsProperty(a) != IsProperty(b)) return false;
    if (IsProperty(a)) {
        const AudioUnitProperty& p = a.mArgument.mProperty;
        const AudioUnitProperty& q = b.mArgument.mProperty;
        return p.mAudioUnit == q.mAudioUnit && p.mPropertyID == q.mPropertyID && p.mScope == q.mScope &&
               p.mElement == q.mElement;
    }
    const AudioUnitParameter& p = a.mArgument.mParameter;
    const AudioUnitParameter& q = b.mArgument.mParameter;
    return p.mAudioUnit == q.mAudioUnit && p.mParameterID == q.mParameterID && p.mScope == q.mScope &&
           p.mElement == q.mElement;
}

bool SameEvent(const AudioUnitEvent& a, const AudioUnitEvent& b)
{
    return a.mEventType == b.mEventType && SameSubject(a, b);
}

} // namespace

void AUEventQueue::add(void* object, const AudioUnitEvent& event)
{
    const bool isThere = std::any_of(mRegistrations.begin(), mRegistrations.end(), [&](const Registration& entry) {
        return entry.object == object && SameEvent(entry.event, event);
    });
    if (!isThere) mRegistrations.push_back({object, event, 0});
}

void AUEventQueue::post(const AUPostedEvent& posted)
{
    if (isStale(posted)) return;
    if (Entry* waiting = mergeableWith(posted)) {
        waiting->posted = posted;
        return;
    }
    if (!hasTarget(posted)) return;
    mEntries.push_back({posted, ++mLastSequence, 0});
    if (IsGesture(posted.event) && ++mGestures > kMostGestures) dropOldestGesture();
}

void AUEventQueue::clear()
{
    mEntries.clear();
    mGestures = 0;
}

// Two threads that set one parameter may post in the other order than they read it back.
bool AUEventQueue::isStale(const AUPostedEvent& posted)
{
    if (posted.event.mEventType != kAudioUnitEvent_ParameterValueChange) return false;
    bool stale = false;
    for (Registration& entry : mRegistrations) {
        if (!SameEvent(entry.event, posted.event)) continue;
        stale |= posted.ticket < entry.newestTicket;
        entry.newestTicket = std::max(entry.newestTicket, posted.ticket);
    }
    return stale;
}

bool AUEventQueue::hasTarget(const AUPostedEvent& posted) const
{
    return std::any_of(mRegistrations.begin(), mRegistrations.end(), [&](const Registration& entry) {
        return posted.sentFor != entry.object && SameEvent(entry.event, posted.event);
    });
}

// Choice: the newest event also decides who isn't told. Its sender knows the value that replaced the one it would have
// been told; the sender of the replaced one is told. Test: AUEventListener.TheNewestSenderIsLeftOut
AUEventQueue::Entry* AUEventQueue::mergeableWith(const AUPostedEvent& posted)
{
    if (IsGesture(posted.event)) return nullptr;
    for (Entry& entry : std::views::reverse(mEntries)) {
        if (!SameSubject(entry.posted.event, posted.event)) continue;
        return IsGesture(entry.posted.event) || entry.nextRegistration > 0 ? nullptr : &entry;
    }
    return nullptr;
}

std::optional<AUEventQueue::Call> AUEventQueue::next(std::uint64_t mark)
{
    while (!mEntries.empty() && mEntries.front().sequence <= mark) {
        Entry& entry = mEntries.front();
        while (entry.nextRegistration < mRegistrations.size()) {
            const Registration& registration = mRegistrations[entry.nextRegistration++];
            if (entry.posted.sentFor != registration.object && SameEvent(registration.event, entry.posted.event))
                return Call{registration.object, entry.posted};
        }
        mGestures -= IsGesture(entry.posted.event) ? 1U : 0U;
        mEntries.pop_front();
    }
    return std::nullopt;
}

// A loop that is stuck must not collect gestures without limit.
void AUEventQueue::dropOldestGesture()
{
    const auto [begin, end] = oldestGesture();
    const AudioUnitEvent subject = begin->posted.event;
    const bool isWhole = end != mEntries.end();
    mGestures -= isWhole ? 2U : 1U;
    if (isWhole) mEntries.erase(end);
    mEntries.erase(begin);
    mergeValues(subject);
}

/// The oldest begin with its end; where no gesture is whole, the oldest half of one and the end of the list.
std::pair<AUEventQueue::Entries::iterator, AUEventQueue::Entries::iterator> AUEventQueue::oldestGesture()
{
    const auto isWaitingGesture = [](const Entry& entry) {
        return entry.nextRegistration == 0 && IsGesture(entry.posted.event);
    };
    const auto oldest = std::find_if(mEntries.begin(), mEntries.end(), isWaitingGesture);
    for (auto begin = oldest; begin != mEntries.end();
         begin = std::find_if(std::next(begin), mEntries.end(), isWaitingGesture)) {
        if (begin->posted.event.mEventType != kAudioUnitEvent_BeginParameterChangeGesture) continue;
        const auto end = std::find_if(std::next(begin), mEntries.end(), [&](const Entry& entry) {
            return IsGesture(entry.posted.event) && SameSubject(entry.posted.event, begin->posted.event);
        });
        if (end != mEntries.end() && end->posted.event.mEventType == kAudioUnitEvent_EndParameterChangeGesture)
            return {begin, end};
    }
    return {oldest, mEntries.end()};
}

// Of values with no gesture between them any more, the newest stays.
void AUEventQueue::mergeValues(const AudioUnitEvent& subject)
{
    bool newerValueFollows = false;
    for (auto entry = mEntries.end(); entry != mEntries.begin();) {
        --entry;
        if (!SameSubject(entry->posted.event, subject)) continue;
        const bool isValue = !IsGesture(entry->posted.event);
        if (isValue && newerValueFollows && entry->nextRegistration == 0) entry = mEntries.erase(entry);
        newerValueFollows = isValue;
    }
}
