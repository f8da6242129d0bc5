#include "Foundation/WeakPtr.h"
#include "Foundation/NSObjectTables.h"

#include <unordered_map>

namespace {

using References = std::unordered_map<NSObject*, std::vector<NSWeakReference*>>;

References& TheReferences()
{
    static auto& references = *new References; // outlives every object
    return references;
}

} // namespace

void NSWeakReference::set(NSObject* object)
{
    if (object == mObject) return;
    if (mObject) {
        const auto found = TheReferences().find(mObject);
        std::erase(found->second, this);
        if (found->second.empty()) TheReferences().erase(found);
    }
    mObject = object;
    if (!object) return;
    TheReferences()[object].push_back(this);
    NSObjectTables::mark(object);
}

void NSForgetWeakReferences(NSObject* object)
{
    const auto found = TheReferences().find(object);
    if (found == TheReferences().end()) return;
    for (NSWeakReference* reference : found->second) reference->mObject = nullptr;
    TheReferences().erase(found);
}
