#include "Foundation/NSKeyValueBinding.h"

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSObjectTables.h"

#include <algorithm>
#include <unordered_map>

namespace {

struct Binding {
    std::string name;
    std::shared_ptr<NSObservation> observation; ///< null for a binding that follows nothing
    RetainPtr<NSDictionary> info;               ///< as it was given; null for one that is written when asked for
};

using Bindings = std::vector<Binding>;

std::unordered_map<const NSObject*, Bindings>& TheBindings()
{
    static auto& bindings = *new std::unordered_map<const NSObject*, Bindings>; // outlives every object
    return bindings;
}

Binding* Find(const NSObject* bound, std::string_view name)
{
    const auto found = TheBindings().find(bound);
    if (found == TheBindings().end()) return nullptr;
    for (Binding& binding : found->second)
        if (binding.name == name) return &binding;
    return nullptr;
}

bool IsOver(const Binding& binding) { return binding.observation && !binding.observation->alive; }

void Send(const NSObservation& observation, const std::string& name)
{
    const RetainPtr<NSObject> value = observation.observed->valueForKeyPath(observation.keyPath);
    observation.observer->setValueForBinding(value, name.c_str());
}

std::shared_ptr<NSObservation> FollowFor(NSObject* bound, const std::string& name, NSObject* observable,
                                         const NSString* keyPath)
{
    auto observation =
        NSObserve(observable, bound, keyPath, [name](const NSObservation& changed) { Send(changed, name); });
    observation->bound = true;
    return observation;
}

void Store(NSObject* bound, Binding binding)
{
    bound->unbind(binding.name.c_str());
    NSObjectTables::mark(bound);
    const auto observation = binding.observation;
    const std::string name = binding.name;
    TheBindings()[bound].push_back(std::move(binding));
    if (!observation) return;
    const RetainPtr<NSObject> keepBound = bound, keepObserved = observation->observed;
    Send(*observation, name);
}

} // namespace

void NSObject::bind(const char* binding, NSObject* observable, const NSString* keyPath)
{
    if (!observable || !keyPath) {
        unbind(binding);
        return;
    }
    static_cast<void>(observable->valueForKeyPath(keyPath)); // an unknown key leaves everything as it was
    Store(this, {binding, FollowFor(this, binding, observable, keyPath), nullptr});
}

void NSObject::bindWithInfo(const char* binding, NSDictionary* info)
{
    NSObject* const observable = info ? info->objectForKey(NSObservedObjectKey) : nullptr;
    const auto* keyPath = info ? asKind<NSString>(info->objectForKey(NSObservedKeyPathKey)) : nullptr;
    if (!info)
        unbind(binding);
    else if (!observable || !keyPath)
        Store(this, {binding, nullptr, info});
    else {
        static_cast<void>(observable->valueForKeyPath(keyPath));
        Store(this, {binding, FollowFor(this, binding, observable, keyPath), info});
    }
}

void NSObject::unbind(const char* binding)
{
    Binding* const found = Find(this, binding);
    if (!found) return;
    const Binding ended = std::move(*found); // its dictionary goes when the table is whole again
    Bindings& list = TheBindings()[this];
    list.erase(list.begin() + (found - list.data()));
    if (list.empty()) TheBindings().erase(this);
    if (ended.observation) NSStopObserving(ended.observation);
}

NSDictionary* NSObject::infoForBinding(const char* name) const
{
    const Binding* const binding = Find(this, name);
    if (!binding || IsOver(*binding)) return nullptr;
    if (binding->info) return NSAutorelease(binding->info);
    const NSObservation& observation = *binding->observation;
    return NSAutorelease(NSDictionary::dictionary(
        {{NSString::string(NSObservedObjectKey).get(), observation.observed},
         {NSString::string(NSObservedKeyPathKey).get(), NSString::string(observation.keyPath->units()).get()}}));
}

void NSObject::setValueForBinding(NSObject* value, const char* binding)
{
    setValue(value, NSString::string(binding).get());
}

void NSForgetBindings(NSObject* object)
{
    const auto found = TheBindings().find(object);
    if (found == TheBindings().end()) return;
    const Bindings ended = std::move(found->second); // the dictionaries go when the table is whole again
    TheBindings().erase(found);
    for (const Binding& binding : ended)
        if (binding.observation) NSStopObserving(binding.observation);
}
