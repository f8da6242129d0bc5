#include "Foundation/NSArray.h"

#include "Foundation/NSException.h"
#include "Foundation/NSReleaseAll.h"
#include "Foundation/NSString.h"

#include <algorithm>

NS_CLASS_TABLE(NSArray, NSObject, "")
NS_CLASS_TABLE_END
NS_CLASS_TABLE(NSMutableArray, NSArray, "")
NS_CLASS_TABLE_END

RetainPtr<NSArray> NSArray::array(std::vector<RetainPtr<NSObject>> objects)
{
    for (const auto& object : objects) checkObject(object);
    auto array = make<NSArray>();
    array->mObjects = std::move(objects);
    return array;
}

RetainPtr<NSArray> NSArray::arrayWithObjects(std::initializer_list<NSObject*> objects)
{
    return array({objects.begin(), objects.end()});
}

void NSArray::dealloc()
{
    const std::exception_ptr first = NSReleaseAll(mObjects);
    NSObject::dealloc();
    if (first) std::rethrow_exception(first);
}

void NSArray::checkIndex(std::size_t index) const
{
    if (index >= count())
        throw NSException(NSInvalidArgumentException,
                          "index " + std::to_string(index) + " is outside a list of " + std::to_string(count()));
}

void NSArray::checkObject(const NSObject* object)
{
    if (!object) throw NSException(NSInvalidArgumentException, "a list can't hold null");
}

NSObject* NSArray::objectAtIndex(std::size_t index) const
{
    checkIndex(index);
    return mObjects[index];
}

std::size_t NSArray::indexOfObject(const NSObject* object) const
{
    const auto isIt = [object](const auto& each) { return object && each->isEqual(object); };
    return static_cast<std::size_t>(std::find_if(begin(), end(), isIt) - begin());
}

bool NSArray::isEqual(const NSObject* other) const
{
    const auto* array = asKind<NSArray>(other);
    return array && std::equal(begin(), end(), array->begin(), array->end(),
                               [](const auto& a, const auto& b) { return a->isEqual(b.get()); });
}

RetainPtr<NSString> NSArray::description() const
{
    std::string text = "(";
    for (const auto& object : mObjects) text += (text.size() > 1 ? ", " : "") + object->description()->utf8();
    return NSString::string(text + ")");
}

void NSMutableArray::addObject(NSObject* object) { insertObject(object, count()); }

void NSMutableArray::insertObject(NSObject* object, std::size_t index)
{
    checkObject(object);
    if (index != count()) checkIndex(index);
    mObjects.insert(begin() + static_cast<std::ptrdiff_t>(index), object);
}

void NSMutableArray::removeObject(const NSObject* object)
{
    const RetainPtr<NSObject> keep = const_cast<NSObject*>(object); // the list may hold its last reference
    for (std::size_t index; (index = indexOfObject(object)) < count();) removeObjectAtIndex(index);
}

void NSMutableArray::removeObjectAtIndex(std::size_t index)
{
    checkIndex(index);
    RetainPtr<NSObject> removed = std::move(mObjects[index]); // ends when the list is whole again
    mObjects.erase(begin() + static_cast<std::ptrdiff_t>(index));
    removed.reset();
}
