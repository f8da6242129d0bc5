#pragma once

/// Between an object and the text that a person reads and types.
///
/// Failure: text that does not stand for an object answers false, with a sentence for the person in `error`. Output
/// pointers may be null.

#include "Foundation/NSClass.h"
#include "Foundation/NSString.h"

class NSFormatter : public NSObject {
public:
    NS_CLASS(NSFormatter)

    /// Null for an object that the formatter can't write.
    virtual RetainPtr<NSString> stringForObjectValue(const NSObject* object) const = 0;
    /// What a field shows while it is edited; the same text unless a formatter says more.
    virtual RetainPtr<NSString> editingStringForObjectValue(const NSObject* object) const;
    virtual bool getObjectValue(RetainPtr<NSObject>* object, const NSString* text,
                                RetainPtr<NSString>* error) const = 0;
    /// Whether the text may stand in the field while it is being typed. False with a `newString` puts that there
    /// instead.
    virtual bool isPartialStringValid(const NSString* partial, RetainPtr<NSString>* newString,
                                      RetainPtr<NSString>* error) const;

protected:
    NSFormatter() = default;
};
