#pragma once

/// Tables beside the objects that name them without owning them. For sources of this folder.

#include "Foundation/NSString.h"

#include <functional>
#include <memory>
#include <vector>

struct NSObjectTables {
    /// Whoever puts `object` into a table says so here; only then is it looked for when it dies.
    static void mark(NSObject* object) { object->mInTables = true; }
    /// Takes a dying object out of every table.
    static void forget(NSObject* object) noexcept;
};

/// One observer of one key path.
struct NSObservation {
    NSObject* observed;
    NSObject* observer;
    RetainPtr<NSString> keyPath;
    std::vector<std::string> keys;
    std::vector<NSObject*> steps; ///< steps[i] is asked for keys[i]; shorter than `keys` where a step has no value
    std::function<void(const NSObservation&)> deliver;
    void* context = nullptr;
    bool bound = false; ///< by a binding, which alone ends it
    bool alive = true;
};

std::shared_ptr<NSObservation> NSObserve(NSObject* observed, NSObject* observer, const NSString* keyPath,
                                         std::function<void(const NSObservation&)> deliver);
void NSStopObserving(const std::shared_ptr<NSObservation>& observation);

/// Around a setter that key-value coding calls: `finish` tells the observers, unless the setter has told them itself.
class NSChangeOfKey {
public:
    NSChangeOfKey(NSObject* object, const std::string& key);
    ~NSChangeOfKey();
    NSChangeOfKey(const NSChangeOfKey&) = delete;
    NSChangeOfKey& operator=(const NSChangeOfKey&) = delete;
    void finish();

private:
    friend class NSObject;
    NSObject* mObject;
    const std::string& mKey;
    NSChangeOfKey* mOuter;
    bool mTold = false;
    static thread_local NSChangeOfKey* sInnermost;
};

// What `forget` does in each table.
void NSForgetObservations(NSObject* object);
void NSForgetBindings(NSObject* object);
void NSForgetNotifications(NSObject* object);
void NSForgetWeakReferences(NSObject* object);
