#include "Foundation/NSObjectTables.h"
#include "Foundation/NSString.h"

#include <algorithm>
#include <ranges>
#include <unordered_map>

namespace {

using Observations = std::vector<std::shared_ptr<NSObservation>>;

/// Every observation that an object takes part in: as observed, as observer or as a step of the path.
std::unordered_map<NSObject*, Observations>& TheParticipants()
{
    static auto& participants = *new std::unordered_map<NSObject*, Observations>; // outlives every object
    return participants;
}

void Enlist(NSObject* object, const std::shared_ptr<NSObservation>& observation)
{
    Observations& list = TheParticipants()[object];
    if (std::find(list.begin(), list.end(), observation) == list.end()) list.push_back(observation);
    NSObjectTables::mark(object);
}

void Delist(NSObject* object, const std::shared_ptr<NSObservation>& observation)
{
    const auto found = TheParticipants().find(object);
    if (found == TheParticipants().end()) return;
    std::erase(found->second, observation);
    if (found->second.empty()) TheParticipants().erase(found);
}

bool TakesPart(const NSObservation& observation, const NSObject* object)
{
    return observation.observed == object || observation.observer == object ||
           std::find(observation.steps.begin(), observation.steps.end(), object) != observation.steps.end();
}

/// Forgets the steps from index `count` on.
void CutSteps(const std::shared_ptr<NSObservation>& observation, std::size_t count)
{
    while (observation->steps.size() > count) {
        NSObject* const last = observation->steps.back();
        observation->steps.pop_back();
        if (!TakesPart(*observation, last)) Delist(last, observation);
    }
}

/// Finds anew the steps behind step `from`. Getters are called, which may end the observation.
void Follow(const std::shared_ptr<NSObservation>& observation, std::size_t from)
{
    CutSteps(observation, from + 1);
    std::vector<RetainPtr<NSObject>> kept; // a step that dies as soon as it was asked would cut the path under the loop
    for (std::size_t i = from; i + 1 < observation->keys.size(); ++i) {
        RetainPtr<NSObject> next = observation->steps[i]->valueForKey(NSString::string(observation->keys[i]).get());
        if (!next || !observation->alive || observation->steps.size() != i + 1) return;
        observation->steps.push_back(next.get());
        Enlist(next.get(), observation);
        kept.push_back(std::move(next));
    }
}

std::vector<std::string> SplitPath(const std::string& path)
{
    std::vector<std::string> keys;
    std::size_t from = 0;
    for (std::size_t dot; (dot = path.find('.', from)) != path.npos; from = dot + 1)
        keys.push_back(path.substr(from, dot - from));
    keys.push_back(path.substr(from));
    return keys;
}

/// Whether `key` of step `i` is what the observation looks at. An object that takes dots in its keys (a dictionary) may
/// hold the whole rest of the path under one of them.
bool LooksAt(const NSObservation& observation, std::size_t i, std::string_view key)
{
    std::string rest = observation.keys[i];
    if (rest == key) return true;
    for (std::size_t k = i + 1; k < observation.keys.size() && rest.size() < key.size(); ++k)
        rest += "." + observation.keys[k];
    return rest == key;
}

void Deliver(const std::shared_ptr<NSObservation>& observation, NSObject* changed, std::string_view key)
{
    const auto& steps = observation->steps;
    for (std::size_t i = 0; observation->alive && i < steps.size(); ++i) {
        if (steps[i] != changed || !LooksAt(*observation, i, key)) continue;
        Follow(observation, i);
        if (!observation->alive) return;
        const RetainPtr<NSObject> observer = observation->observer, observed = observation->observed;
        observation->deliver(*observation);
        return;
    }
}

} // namespace

std::shared_ptr<NSObservation> NSObserve(NSObject* observed, NSObject* observer, const NSString* keyPath,
                                         std::function<void(const NSObservation&)> deliver)
{
    auto observation = std::make_shared<NSObservation>();
    observation->observed = observed;
    observation->observer = observer;
    observation->keyPath = NSString::string(keyPath->units());
    observation->keys = SplitPath(keyPath->utf8());
    observation->steps = {observed};
    observation->deliver = std::move(deliver);
    Enlist(observed, observation);
    Enlist(observer, observation);
    try {
        Follow(observation, 0);
    } catch (...) {
        NSStopObserving(observation);
        throw;
    }
    return observation;
}

void NSStopObserving(const std::shared_ptr<NSObservation>& observation)
{
    // the argument may stand in one of the lists
    const auto keep = observation; // NOLINT(performance-unnecessary-copy-initialization)
    keep->alive = false;
    CutSteps(keep, 0);
    Delist(keep->observed, keep);
    Delist(keep->observer, keep);
}

void NSForgetObservations(NSObject* object)
{
    const auto found = TheParticipants().find(object);
    if (found == TheParticipants().end()) return;
    const Observations list = found->second;
    for (const auto& observation : list) {
        if (observation->observed == object || observation->observer == object) {
            NSStopObserving(observation);
        } else {
            const auto& steps = observation->steps;
            const auto step = std::find(steps.begin(), steps.end(), object);
            CutSteps(observation, static_cast<std::size_t>(step - steps.begin()));
        }
    }
}

void NSObject::addObserverForKeyPath(NSObject* observer, const NSString* keyPath, void* context)
{
    if (!observer || !keyPath) return;
    NSObserve(this, observer, keyPath, [](const NSObservation& observation) {
        const RetainPtr<NSString> path = observation.keyPath; // the observer may end the observation
        observation.observer->observeValueForKeyPath(path, observation.observed, observation.context);
    })->context = context;
}

void NSObject::removeObserverForKeyPath(NSObject* observer, const NSString* keyPath)
{
    const auto found = TheParticipants().find(this);
    if (found == TheParticipants().end()) return;
    const Observations list = found->second;
    for (const auto& last : std::views::reverse(list)) {
        const NSObservation& each = *last;
        if (each.bound || each.observed != this || each.observer != observer || !each.keyPath->isEqual(keyPath))
            continue;
        NSStopObserving(last);
        return;
    }
}

void NSObject::willChangeValueForKey(const char*) {}

void NSObject::didChangeValueForKey(const char* key)
{
    for (NSChangeOfKey* change = NSChangeOfKey::sInnermost; change; change = change->mOuter)
        if (change->mObject == this && change->mKey == key) change->mTold = true;
    if (!mInTables) return;
    const auto found = TheParticipants().find(this);
    if (found == TheParticipants().end()) return;
    const RetainPtr<NSObject> self = this;
    const std::string name = key;
    const Observations list = found->second; // observers come and go while they are told
    for (const auto& observation : list) Deliver(observation, this, name);
}

void NSObject::observeValueForKeyPath(const NSString*, NSObject*, void*) {}

thread_local NSChangeOfKey* NSChangeOfKey::sInnermost = nullptr;

NSChangeOfKey::NSChangeOfKey(NSObject* object, const std::string& key)
    : mObject(object), mKey(key), mOuter(std::exchange(sInnermost, this))
{
    object->willChangeValueForKey(key.c_str());
}

NSChangeOfKey::~NSChangeOfKey() { sInnermost = mOuter; }

void NSChangeOfKey::finish()
{
    if (!mTold) mObject->didChangeValueForKey(mKey.c_str());
}
