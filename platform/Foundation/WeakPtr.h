#pragma once

/// A pointer to an object that somebody else owns; null once the object is gone.
///
/// The object counts as gone when its `dealloc()` has run, before its destructor. For the thread of the user interface.
///
/// Example: a cell's target is a `WeakPtr<NSObject>`, so that a control that outlives its target does nothing.

#include "Foundation/NSObject.h"

class NSWeakReference {
public:
    NSWeakReference() = default;
    explicit NSWeakReference(NSObject* object) { set(object); }
    NSWeakReference(const NSWeakReference&) = delete;
    NSWeakReference& operator=(const NSWeakReference&) = delete;
    ~NSWeakReference() { set(nullptr); }

    void set(NSObject* object);
    NSObject* object() const { return mObject; }

private:
    friend void NSForgetWeakReferences(NSObject* object);
    NSObject* mObject = nullptr;
};

template <typename T> class WeakPtr {
public:
    WeakPtr() = default;
    WeakPtr(T* object) : mReference(object), mTyped(object) {}
    WeakPtr(const WeakPtr& other) : WeakPtr(other.get()) {}
    WeakPtr& operator=(const WeakPtr& other) { return *this = other.get(); }
    WeakPtr& operator=(T* object)
    {
        mReference.set(object);
        mTyped = object;
        return *this;
    }

    T* get() const { return mReference.object() ? mTyped : nullptr; }
    T* operator->() const { return get(); }
    operator T*() const { return get(); }

private:
    NSWeakReference mReference;
    T* mTyped = nullptr;
};
