#include "Foundation/NSFormatter.h"

NS_CLASS_TABLE(NSFormatter, NSObject, "")
NS_CLASS_TABLE_END

RetainPtr<NSString> NSFormatter::editingStringForObjectValue(const NSObject* object) const
{
    return stringForObjectValue(object);
}

bool NSFormatter::isPartialStringValid(const NSString*, RetainPtr<NSString>*, RetainPtr<NSString>*) const
{
    return true;
}
