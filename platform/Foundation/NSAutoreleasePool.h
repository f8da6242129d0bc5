#pragma once

/// Objects that live until the innermost pool of their thread ends.
///
/// A pool stands on the stack; pools nest. Objects given away while there is no pool belong to the thread, until its
/// next outermost pool ends.
///
/// Failure: an object's end may throw. `drain` lets go of everything first and then passes on the first exception; the
/// destructor writes it to the log.
///
/// Example: `return NSAutorelease(NSString::string("440"));` answers a plain `NSString*`.

#include "Foundation/RetainPtr.h"

#include <vector>

class NSAutoreleasePool {
public:
    NSAutoreleasePool();
    ~NSAutoreleasePool();
    NSAutoreleasePool(const NSAutoreleasePool&) = delete;
    NSAutoreleasePool& operator=(const NSAutoreleasePool&) = delete;

    /// Lets go of everything now; the pool can be used on.
    void drain();
    /// Gives `object` to the innermost pool.
    static void add(RetainPtr<NSObject> object);

private:
    NSAutoreleasePool* mOuter;
    std::vector<RetainPtr<NSObject>> mObjects;
};

template <typename T> T* NSAutorelease(RetainPtr<T> object)
{
    T* const plain = object.get();
    NSAutoreleasePool::add(std::move(object));
    return plain;
}
