#include "CoreFoundation/CFArray.h"

#include "Foundation/NSException.h"

CFArrayRef CFArrayCreate(const NSObject* const* objects, CFIndex count)
{
    std::vector<RetainPtr<NSObject>> list;
    for (CFIndex i = 0; i < count; ++i) list.emplace_back(const_cast<NSObject*>(objects[i]));
    return NSArray::array(std::move(list)).leak();
}

CFIndex CFArrayGetCount(CFArrayRef array) { return array ? static_cast<CFIndex>(array->count()) : 0; }

const NSObject* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index)
{
    if (!array) throw NSException(NSInvalidArgumentException, "a null list has no objects");
    return array->objectAtIndex(static_cast<std::size_t>(index)); // a negative index is past every end
}
