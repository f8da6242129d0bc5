#include "Foundation/NSDictionary.h"

#include "Foundation/NSException.h"
#include "Foundation/NSReleaseAll.h"

NS_CLASS_TABLE(NSDictionary, NSObject, "")
NS_CLASS_TABLE_END
NS_CLASS_TABLE(NSMutableDictionary, NSDictionary, "")
NS_CLASS_TABLE_END

namespace {

/// Around a change of the object under a key: observers of a text key are told by `finish`.
class DictionaryChange {
public:
    DictionaryChange(NSObject* dictionary, const NSObject* key) : mDictionary(dictionary)
    {
        if (const auto* text = asKind<NSString>(key))
            mKey = text->utf8();
        else
            mIsText = false;
        if (mIsText) dictionary->willChangeValueForKey(mKey.c_str());
    }
    void finish()
    {
        if (mIsText) mDictionary->didChangeValueForKey(mKey.c_str());
    }

private:
    NSObject* mDictionary;
    std::string mKey;
    bool mIsText = true;
};

} // namespace

RetainPtr<NSDictionary> NSDictionary::dictionary(std::initializer_list<std::pair<NSObject*, NSObject*>> keysAndObjects)
{
    auto dictionary = make<NSDictionary>();
    for (const auto& [key, object] : keysAndObjects) dictionary->store(object, key);
    return dictionary;
}

void NSDictionary::dealloc()
{
    std::vector<RetainPtr<NSObject>> all;
    for (Entry& entry : mEntries) {
        all.push_back(std::move(entry.key));
        all.push_back(std::move(entry.object));
    }
    mIndex.clear();
    mEntries.clear();
    const std::exception_ptr first = NSReleaseAll(all);
    NSObject::dealloc();
    if (first) std::rethrow_exception(first);
}

RetainPtr<NSObject> NSDictionary::store(NSObject* object, NSObject* key)
{
    if (!key || !object) throw NSException(NSInvalidArgumentException, "a dictionary can't hold null");
    if (const auto found = mIndex.find(key); found != mIndex.end())
        return std::exchange(found->second->object, RetainPtr<NSObject>(object));
    const auto entry = mEntries.insert(mEntries.end(), {key, object});
    mIndex.emplace(key, entry);
    return nullptr;
}

NSObject* NSDictionary::objectForKey(const NSObject* key) const
{
    const auto found = key ? mIndex.find(key) : mIndex.end();
    return found == mIndex.end() ? nullptr : found->second->object.get();
}

NSObject* NSDictionary::objectForKey(std::string_view key) const { return objectForKey(NSString::string(key).get()); }

RetainPtr<NSArray> NSDictionary::allKeys() const
{
    std::vector<RetainPtr<NSObject>> keys;
    for (const Entry& entry : mEntries) keys.push_back(entry.key);
    return NSArray::array(std::move(keys));
}

RetainPtr<NSArray> NSDictionary::allKeysForObject(const NSObject* object) const
{
    std::vector<RetainPtr<NSObject>> keys;
    for (const Entry& entry : mEntries)
        if (object && entry.object->isEqual(object)) keys.push_back(entry.key);
    return NSArray::array(std::move(keys));
}

void NSDictionary::setValue(NSObject*, const NSString* key)
{
    throw NSException(NSInvalidArgumentException,
                      "this dictionary can't change, “" + (key ? key->utf8() : std::string()) + "” was to be set");
}

RetainPtr<NSObject> NSDictionary::valueForKey(const NSString* key) const
{
    NSObject* const object = objectForKey(key);
    if (!object && key && key->units() == u"self") return const_cast<NSDictionary*>(this);
    return object;
}

bool NSDictionary::isEqual(const NSObject* other) const
{
    if (this == other) return true;
    const auto* dictionary = asKind<NSDictionary>(other);
    if (!dictionary || dictionary->count() != count()) return false;
    for (const Entry& entry : mEntries) {
        const NSObject* object = dictionary->objectForKey(entry.key.get());
        if (!object || !entry.object->isEqual(object)) return false;
    }
    return true;
}

RetainPtr<NSString> NSDictionary::description() const
{
    std::string text = "{";
    for (const Entry& entry : mEntries)
        text += (text.size() > 1 ? ", " : "") + entry.key->description()->utf8() + " = " +
                entry.object->description()->utf8();
    return NSString::string(text + "}");
}

void NSMutableDictionary::setObject(NSObject* object, NSObject* key)
{
    const RetainPtr<NSObject> self = this;
    DictionaryChange change(this, key);
    RetainPtr<NSObject> before = store(object, key);
    change.finish();
    before.reset();
}

void NSMutableDictionary::removeObjectForKey(const NSObject* key)
{
    const auto found = key ? mIndex.find(key) : mIndex.end();
    if (found == mIndex.end()) return;
    const RetainPtr<NSObject> self = this;
    DictionaryChange change(this, key);
    const auto place = found->second;
    std::vector<RetainPtr<NSObject>> removed{std::move(place->key), std::move(place->object)};
    mIndex.erase(found);
    mEntries.erase(place);
    change.finish();
    if (const std::exception_ptr first = NSReleaseAll(removed)) std::rethrow_exception(first);
}

void NSMutableDictionary::addEntriesFromDictionary(const NSDictionary* other)
{
    const RetainPtr<NSArray> keys = other->allKeys();
    for (const auto& key : *keys)
        if (const RetainPtr<NSObject> object = other->objectForKey(key.get())) setObject(object, key);
}

void NSMutableDictionary::setValue(NSObject* value, const NSString* key)
{
    if (value)
        setObject(value, key ? NSString::string(key->units()).get() : nullptr);
    else
        removeObjectForKey(key);
}
