#pragma once

/// Lists of objects. A list owns its objects; null is refused with NSInvalidArgumentException, as is an index past the
/// end.

#include "Foundation/NSClass.h"

#include <initializer_list>
#include <vector>

class NSArray : public NSObject {
public:
    NS_CLASS(NSArray)

    static RetainPtr<NSArray> array(std::vector<RetainPtr<NSObject>> objects);
    static RetainPtr<NSArray> arrayWithObjects(std::initializer_list<NSObject*> objects);

    std::size_t count() const { return mObjects.size(); }
    NSObject* objectAtIndex(std::size_t index) const;
    bool containsObject(const NSObject* object) const { return indexOfObject(object) < count(); }
    std::size_t indexOfObject(const NSObject* object) const; ///< of the first equal one; `count()` when there is none

    // Keep the list while going through it: `const auto keys = d->allKeys(); for (auto& key : *keys)`.
    auto begin() const { return mObjects.begin(); }
    auto end() const { return mObjects.end(); }

    /// Equal when all objects are, in order.
    bool isEqual(const NSObject* other) const override;
    std::size_t hash() const override { return mObjects.size(); }
    RetainPtr<NSString> description() const override;

protected:
    void dealloc() override;
    void checkIndex(std::size_t index) const;
    static void checkObject(const NSObject* object);

    std::vector<RetainPtr<NSObject>> mObjects;
};

class NSMutableArray : public NSArray {
public:
    NS_CLASS(NSMutableArray)

    void addObject(NSObject* object);
    void insertObject(NSObject* object, std::size_t index); ///< at most at the end
    void removeObject(const NSObject* object);              ///< every equal one
    void removeObjectAtIndex(std::size_t index);
};
