#include "Foundation/NSNotification.h"

#include "Foundation/NSException.h"
#include "Foundation/NSObjectTables.h"

#include <algorithm>

NS_CLASS_TABLE(NSNotification, NSObject, "")
NS_CLASS_TABLE_END
NS_CLASS_TABLE(NSNotificationCenter, NSObject, "")
NS_CLASS_TABLE_END

struct NSNotificationCenter::Observer {
    NSObject* observer;
    RetainPtr<NSString> name; ///< null: every name
    NSObject* object;         ///< null: every object
    std::function<void(NSNotification&)> call;
    bool alive = true;

    bool wants(const NSNotification& notification) const
    {
        return alive && (!object || object == notification.object()) &&
               (!name || name->isEqualToString(notification.name()));
    }
};

NSNotificationCenter* NSNotificationCenter::defaultCenter()
{
    static NSNotificationCenter& center = *new NSNotificationCenter; // objects that end last still take leave of it
    return &center;
}

void NSNotificationCenter::add(NSObject* observer, const NSString* name, NSObject* object,
                               std::function<void(NSNotification&)> call)
{
    auto entry = std::make_shared<Observer>();
    entry->observer = observer;
    entry->name = name ? NSString::string(name->units()) : nullptr;
    entry->object = object;
    entry->call = std::move(call);
    mObservers.push_back(std::move(entry));
    NSObjectTables::mark(observer);
    if (object) NSObjectTables::mark(object);
}

void NSNotificationCenter::addObserver(NSObject* observer, SEL selector, const NSString* name, NSObject* object)
{
    if (!observer) return;
    if (!observer->respondsToSelector(selector))
        throw NSException(NSInvalidArgumentException, std::string(observer->classTable().name) + " has no action “" +
                                                          (selector ? selector : "") + "” for the notification “" +
                                                          (name ? name->utf8() : "") + "”");
    add(observer, name, object,
        [observer, selector](NSNotification& notification) { observer->performSelector(selector, &notification); });
}

RetainPtr<NSObject> NSNotificationCenter::addObserverUsingBlock(const NSString* name, NSObject* object,
                                                                std::function<void(NSNotification&)> block)
{
    class Token final : public NSObject {};
    RetainPtr<NSObject> token = make<Token>();
    add(token, name, object, std::move(block));
    return token;
}

void NSNotificationCenter::removeWhere(const std::function<bool(const Observer&)>& fits)
{
    std::vector<std::shared_ptr<Observer>> removed; // what their functions hold goes when the list is whole again
    std::erase_if(mObservers, [&](const std::shared_ptr<Observer>& each) {
        if (!fits(*each)) return false;
        each->alive = false;
        removed.push_back(each);
        return true;
    });
}

void NSNotificationCenter::removeObserver(const NSObject* observer) { removeObserver(observer, nullptr, nullptr); }

void NSNotificationCenter::removeObserver(const NSObject* observer, const NSString* name, const NSObject* object)
{
    removeWhere([&](const Observer& each) {
        return each.observer == observer && (!object || each.object == object) &&
               (!name || (each.name && each.name->isEqualToString(name)));
    });
}

void NSNotificationCenter::postNotificationName(const NSString* name, NSObject* object, NSDictionary* userInfo)
{
    if (!name) return;
    const RetainPtr<NSNotification> notification = make<NSNotification>();
    notification->mName = NSString::string(name->units());
    notification->mObject = object;
    notification->mUserInfo = userInfo;
    std::vector<std::shared_ptr<Observer>> told;
    std::copy_if(mObservers.begin(), mObservers.end(), std::back_inserter(told),
                 [&](const auto& each) { return each->wants(*notification); });
    for (const auto& each : told) {
        if (!each->alive) continue; // removed by one that was told before it
        const RetainPtr<NSObject> observer = each->observer;
        each->call(*notification);
    }
}

void NSForgetNotifications(NSObject* object)
{
    NSNotificationCenter::defaultCenter()->removeWhere([object](const NSNotificationCenter::Observer& each) {
        return each.observer == object || each.object == object;
    });
}
