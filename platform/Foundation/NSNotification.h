#pragma once

/// Announcements by name. Everything is synchronous: posting returns when every observer has been told.
///
/// Observers and the objects that they watch are not retained; an observation ends with either. Observers may come, go
/// and die while they are being told; one that was removed is told no more, one that was added is told from the next
/// post on. An exception of an observer reaches whoever posted, and the observers behind it are not told.

#include "Foundation/NSDictionary.h"

#include <functional>
#include <memory>

class NSNotification final : public NSObject {
public:
    NS_CLASS(NSNotification)

    const NSString* name() const { return mName; }
    NSObject* object() const { return mObject; }         ///< who posted; may be null
    NSDictionary* userInfo() const { return mUserInfo; } ///< may be null

private:
    friend class NSNotificationCenter;
    RetainPtr<NSString> mName;
    RetainPtr<NSObject> mObject;
    RetainPtr<NSDictionary> mUserInfo;
};

class NSNotificationCenter final : public NSObject {
public:
    NS_CLASS(NSNotificationCenter)

    static NSNotificationCenter* defaultCenter();

    /// Calls the observer's action of that name with the NSNotification. A null name stands for every name, a null
    /// object for every object. Raises NSInvalidArgumentException for an action that the observer's class doesn't have.
    void addObserver(NSObject* observer, SEL selector, const NSString* name, NSObject* object);
    /// The same with a function. It ends with the last reference to the answer, or with `removeObserver(answer)`.
    RetainPtr<NSObject> addObserverUsingBlock(const NSString* name, NSObject* object,
                                              std::function<void(NSNotification&)> block);
    void removeObserver(const NSObject* observer);
    /// Ends what fits: a null name or object fits everything.
    void removeObserver(const NSObject* observer, const NSString* name, const NSObject* object);

    void postNotificationName(const NSString* name, NSObject* object, NSDictionary* userInfo = nullptr);

private:
    NSNotificationCenter() = default;
    friend void NSForgetNotifications(NSObject* object);

    struct Observer;
    void add(NSObject* observer, const NSString* name, NSObject* object, std::function<void(NSNotification&)> call);
    void removeWhere(const std::function<bool(const Observer&)>& fits);

    std::vector<std::shared_ptr<Observer>> mObservers;
};
