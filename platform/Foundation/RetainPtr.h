#pragma once

/// Owning pointers to objects, and the two steps in which objects are born.
///
/// An object counts its references itself. `RetainPtr<T>` owns one of them; a plain pointer never owns. Nothing here is
/// safe to share between threads: objects belong to the thread of the user interface.
///
/// Failure: letting go of the last reference runs the object's `dealloc()`, which may throw. Assignment and `reset()`
/// pass that exception on; the destructor, which can't, writes it to the log.
///
/// Example: `RetainPtr<NSView> view = make<NSView>(NSRect{{0, 0}, {100, 20}});`

#include <cstddef>
#include <type_traits>
#include <utility>

class NSObject;

namespace NSReference {
void retain(NSObject* object);  ///< one more reference; null is allowed
void release(NSObject* object); ///< one less; may throw what the object's dealloc() throws
void releaseNoThrow(NSObject* object) noexcept;

// The count is no part of an object's value: `RetainPtr<const NSString>` owns as well.
inline void retain(const NSObject* object) { retain(const_cast<NSObject*>(object)); }
inline void release(const NSObject* object) { release(const_cast<NSObject*>(object)); }
inline void releaseNoThrow(const NSObject* object) noexcept { releaseNoThrow(const_cast<NSObject*>(object)); }
} // namespace NSReference

template <typename T> class RetainPtr {
public:
    RetainPtr() = default;
    RetainPtr(std::nullptr_t) {}
    /// Takes a reference of its own to `object`.
    RetainPtr(T* object) : mObject(object) { NSReference::retain(mObject); }
    RetainPtr(const RetainPtr& other) : RetainPtr(other.mObject) {}
    RetainPtr(RetainPtr&& other) noexcept : mObject(other.leak()) {}
    template <typename U>
    requires std::is_convertible_v<U*, T*> RetainPtr(const RetainPtr<U>& other) : RetainPtr(other.get()) {}
    template <typename U>
    requires std::is_convertible_v<U*, T*> RetainPtr(RetainPtr<U>&& other)
    noexcept : mObject(other.leak()) {}
    ~RetainPtr() { NSReference::releaseNoThrow(mObject); }

    RetainPtr& operator=(RetainPtr other)
    {
        std::swap(mObject, other.mObject);
        other.reset();
        return *this;
    }

    /// Lets go of the object; passes on what its dealloc() throws.
    void reset() { NSReference::release(std::exchange(mObject, nullptr)); }

    /// Takes over a reference that the caller owns.
    static RetainPtr adopt(T* object)
    {
        RetainPtr pointer;
        pointer.mObject = object;
        return pointer;
    }
    /// Hands the owned reference to the caller, who must give it back with `adopt`.
    [[nodiscard]] T* leak() { return std::exchange(mObject, nullptr); }

    T* get() const { return mObject; }
    T* operator->() const { return mObject; }
    T& operator*() const { return *mObject; }
    explicit operator bool() const { return mObject != nullptr; }
    /// A kept pointer passes as a plain one; a temporary says `.get()`, so that it isn't stored by mistake.
    operator T*() const& { return mObject; }
    operator T*() const&& = delete;

    friend bool operator==(const RetainPtr& a, const RetainPtr& b) { return a.mObject == b.mObject; }
    template <typename U> friend bool operator==(const RetainPtr& a, U* b) { return a.mObject == b; }
    friend bool operator==(const RetainPtr& a, std::nullptr_t) { return a.mObject == nullptr; }

private:
    T* mObject = nullptr;
};

/// Makes an object with the named initialiser: `make<NSString>(&NSString::initWithCharacters, units, length)`.
/// @return the owning pointer; null where the initialiser answered false
template <typename T, typename Base, typename... Parameters, typename... Arguments>
RetainPtr<T> make(bool (Base::*initialiser)(Parameters...), Arguments&&... arguments)
{
    auto object = RetainPtr<T>::adopt(new T);
    if (!((*object).*initialiser)(std::forward<Arguments>(arguments)...)) return nullptr;
    return object;
}

/// Makes an object with `init()`, or with `initWithFrame(frame)` where a frame is given.
template <typename T> RetainPtr<T> make() { return make<T>(&T::init); }

template <typename T, typename Frame>
requires requires(T& object, const Frame& frame) { object.initWithFrame(frame); }
RetainPtr<T> make(const Frame& frame)
{
    auto object = RetainPtr<T>::adopt(new T);
    if (!object->initWithFrame(frame)) return nullptr;
    return object;
}
