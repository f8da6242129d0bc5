#pragma once

/// The description that an object is made from: its attributes and its child objects, by key.

#include "Foundation/NSString.h"

class NSCoder {
public:
    virtual ~NSCoder() = default;

    virtual bool containsValueForKey(const char* key) const = 0;
    // The fallback stands for a missing value and for one that doesn't read as the type.
    virtual double decodeDoubleForKey(const char* key, double fallback) const = 0;
    virtual bool decodeBoolForKey(const char* key, bool fallback) const = 0;
    virtual long decodeIntegerForKey(const char* key, long fallback) const = 0;
    virtual RetainPtr<NSString> decodeStringForKey(const char* key) const = 0; ///< null when missing
    /// The described child of that key, made on first use; null when there is none.
    virtual RetainPtr<NSObject> decodeObjectForKey(const char* key) = 0;

protected:
    NSCoder() = default;
    NSCoder(const NSCoder&) = default;
    NSCoder& operator=(const NSCoder&) = default;
};
