#pragma once

/// Objects under keys. Keys and objects are owned; keys are found by equality and keep the order in which they came.
/// Null keys and objects are refused with NSInvalidArgumentException.
///
/// Key-value coding takes every text as a key, dots included: `setValue(number, "a.b")` stores under "a.b".

#include "Foundation/NSArray.h"
#include "Foundation/NSString.h"

#include <initializer_list>
#include <list>
#include <unordered_map>
#include <utility>

class NSDictionary : public NSObject {
public:
    NS_CLASS(NSDictionary)

    static RetainPtr<NSDictionary> dictionary(std::initializer_list<std::pair<NSObject*, NSObject*>> keysAndObjects);

    std::size_t count() const { return mEntries.size(); }
    NSObject* objectForKey(const NSObject* key) const; ///< null when there is none
    NSObject* objectForKey(std::string_view key) const;
    RetainPtr<NSArray> allKeys() const;
    RetainPtr<NSArray> allKeysForObject(const NSObject* object) const;

    /// Raises NSInvalidArgumentException: this dictionary can't change.
    void setValue(NSObject* value, const NSString* key) override;
    RetainPtr<NSObject> valueForKey(const NSString* key) const override;

    /// Equal when both have equal objects under equal keys, whatever their order.
    bool isEqual(const NSObject* other) const override;
    std::size_t hash() const override { return mEntries.size(); }
    RetainPtr<NSString> description() const override;

protected:
    void dealloc() override;

    struct Entry {
        RetainPtr<NSObject> key, object;
    };
    struct Hash {
        std::size_t operator()(const NSObject* key) const { return key->hash(); }
    };
    struct Equal {
        bool operator()(const NSObject* a, const NSObject* b) const { return a->isEqual(b); }
    };
    using Entries = std::list<Entry>;

    /// @return what stood under the key before
    RetainPtr<NSObject> store(NSObject* object, NSObject* key);

    Entries mEntries;
    std::unordered_map<const NSObject*, Entries::iterator, Hash, Equal> mIndex;
};

class NSMutableDictionary : public NSDictionary {
public:
    NS_CLASS(NSMutableDictionary)

    // Observers of a text key are told.
    void setObject(NSObject* object, NSObject* key);
    void removeObjectForKey(const NSObject* key);
    void addEntriesFromDictionary(const NSDictionary* other);

    /// The same through key-value coding; null removes.
    void setValue(NSObject* value, const NSString* key) override;
};
