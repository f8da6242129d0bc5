#pragma once

/// Every object of this folder is an NSObject; `RetainPtr` is the better way to hold one. These two serve references
/// that a call hands over by contract.

#include "Foundation/NSObject.h"

using CFIndex = std::ptrdiff_t;

struct CFRange {
    CFIndex location;
    CFIndex length;
};
constexpr CFRange CFRangeMake(CFIndex location, CFIndex length) { return {location, length}; }

inline void CFRetain(const NSObject* object) { NSReference::retain(const_cast<NSObject*>(object)); }
/// Passes on what the object's end throws.
inline void CFRelease(const NSObject* object) { NSReference::release(const_cast<NSObject*>(object)); }
