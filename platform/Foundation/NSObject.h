#pragma once

/// The root of all objects: reference count, class table, key-value coding and observation.
///
/// Failure: a selector, key or class name that doesn't exist raises an `NSException` that names it. Messages to null
/// are the caller's to skip; `Outlet<T>` does it for references that may stay empty.

#include "Foundation/RetainPtr.h"

#include <cstdint>
#include <string>
#include <string_view>

class NSCoder;
class NSDictionary;
class NSString;
struct NSClass;

/// Name of a message, with its colons: "sliderChanged:". A text constant that lives as long as the process.
using SEL = const char*;

class NSObject {
public:
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    /// Second step of birth. @return false when the object can't be used; `make` then answers null.
    virtual bool init() { return true; }
    /// The same from an archive or interface description.
    virtual bool initWithCoder(NSCoder& coder);
    /// Sent to every object of an interface description once all its outlets and actions are connected.
    virtual void awakeFromNib() {}

    /// The table of the object's own class, and of this one.
    virtual const NSClass& classTable() const;
    static const NSClass& staticClass();

    /// Equality by value where a class defines one, else identity. Equal objects have equal hashes.
    virtual bool isEqual(const NSObject* other) const { return this == other; }
    virtual std::size_t hash() const { return reinterpret_cast<std::uintptr_t>(this); }
    /// What a person reads of the object in a log: "<NSView 0x55...>" unless the class says more.
    virtual RetainPtr<NSString> description() const;

    template <typename T> bool isKindOfClass() const { return dynamic_cast<const T*>(this) != nullptr; }

    /// Whether the class table, or that of a base, has an action of this name.
    bool respondsToSelector(SEL selector) const;
    /// Calls the action of this name with `argument`. Raises NSInvalidArgumentException for an unknown name.
    void performSelector(SEL selector, NSObject* argument);

    // Key-value coding. The defaults use the class table; a dictionary overrides both and takes every key, dots
    // included.
    virtual void setValue(NSObject* value, const NSString* key);
    virtual RetainPtr<NSObject> valueForKey(const NSString* key) const;
    void setValueForKeyPath(NSObject* value, const NSString* keyPath);
    RetainPtr<NSObject> valueForKeyPath(const NSString* keyPath) const;

    // Key-value observation. Observers are not retained; an object that dies drops its observers.
    void addObserverForKeyPath(NSObject* observer, const NSString* keyPath, void* context);
    void removeObserverForKeyPath(NSObject* observer, const NSString* keyPath);
    void willChangeValueForKey(const char* key);
    void didChangeValueForKey(const char* key);
    /// Sent to observers after `didChangeValueForKey`; the new value is read with `valueForKeyPath`.
    virtual void observeValueForKeyPath(const NSString* keyPath, NSObject* object, void* context);

    // Bindings; see NSKeyValueBinding.h.
    void bind(const char* binding, NSObject* observable, const NSString* keyPath);
    void bindWithInfo(const char* binding, NSDictionary* info);
    void unbind(const char* binding);
    /// What `binding` is bound to; null when it isn't. The answer lives as long as the innermost autorelease pool.
    NSDictionary* infoForBinding(const char* binding) const;
    /// Receives the bound value, once at binding and then at each change. The default sets the key named as the
    /// binding.
    virtual void setValueForBinding(NSObject* value, const char* binding);

protected:
    NSObject() = default;
    virtual ~NSObject();

    /// Lets go of what the object created, then calls the base's. Runs once, on the whole object, before the
    /// destructor.
    virtual void dealloc() {}

private:
    friend void NSReference::retain(NSObject*);
    friend void NSReference::release(NSObject*);
    friend struct NSObjectTables;

    std::uint32_t mReferences = 1;
    bool mInTables = false; ///< some table of observers or bindings names this object
};

/// What `dynamic_cast` says, null for null: `asKind<NSNumber>(value)`.
template <typename T> T* asKind(NSObject* object) { return dynamic_cast<T*>(object); }
template <typename T> const T* asKind(const NSObject* object) { return dynamic_cast<const T*>(object); }
