#include "Foundation/NSClass.h"
#include "Foundation/NSDictionary.h"
#include "Foundation/NSException.h"
#include "Foundation/NSObjectTables.h"
#include "Foundation/NSString.h"

namespace {

NSException UndefinedKey(const NSObject* object, const std::string& key, const char* what)
{
    return {NSUndefinedKeyException, std::string(object->classTable().name) + " has no " + what + " “" + key + "”"};
}

std::string KeyText(const NSString* key) { return key ? key->utf8() : std::string(); }

/// The object that the last key of the path is asked of, and that key; null where a step has no value.
struct End {
    RetainPtr<NSObject> object;
    RetainPtr<NSString> key;
};

/// A dictionary takes keys with dots in them, so it may hold the rest of a path under one.
bool HoldsWhole(const NSObject* object, std::u16string rest)
{
    const auto* dictionary = asKind<NSDictionary>(object);
    return dictionary && dictionary->objectForKey(NSString::string(std::move(rest)).get());
}

End FollowPath(NSObject* start, const NSString* keyPath)
{
    const std::u16string path = keyPath ? keyPath->units() : std::u16string();
    End end{start, nullptr};
    std::size_t from = 0;
    for (std::size_t dot; (dot = path.find(u'.', from)) != path.npos; from = dot + 1) {
        if (!end.object || HoldsWhole(end.object, path.substr(from))) break;
        end.object = end.object->valueForKey(NSString::string(path.substr(from, dot - from)).get());
    }
    end.key = NSString::string(path.substr(from));
    return end;
}

} // namespace

void NSObject::setValue(NSObject* value, const NSString* key)
{
    const std::string name = KeyText(key);
    const NSClass::Key* entry = classTable().findKey(name);
    if (!entry || !entry->set) throw UndefinedKey(this, name, "key to set named");
    const RetainPtr<NSObject> self = this; // the setter may let go of the last reference to its own object
    NSChangeOfKey change(this, name);
    entry->set(this, value);
    change.finish();
}

RetainPtr<NSObject> NSObject::valueForKey(const NSString* key) const
{
    const std::string name = KeyText(key);
    const NSClass::Key* entry = classTable().findKey(name);
    if (!entry && name == "self") return const_cast<NSObject*>(this);
    if (!entry) throw UndefinedKey(this, name, "key named");
    return entry->get(this);
}

void NSObject::setValueForKeyPath(NSObject* value, const NSString* keyPath)
{
    const End end = FollowPath(this, keyPath);
    if (end.object) end.object->setValue(value, end.key);
}

RetainPtr<NSObject> NSObject::valueForKeyPath(const NSString* keyPath) const
{
    const End end = FollowPath(const_cast<NSObject*>(this), keyPath);
    return end.object ? end.object->valueForKey(end.key) : nullptr;
}
