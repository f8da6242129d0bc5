#pragma once

/// Lists as plain functions see them; a `CFArrayRef` is an `NSArray`.

#include "CoreFoundation/CFBase.h"
#include "Foundation/NSArray.h"

using CFArrayRef = const NSArray*;

/// A list that retains `count` objects; the caller owns the answer and gives it back with `CFRelease`.
CFArrayRef CFArrayCreate(const NSObject* const* objects, CFIndex count);
CFIndex CFArrayGetCount(CFArrayRef array); ///< 0 for null
/// Raises NSInvalidArgumentException for an index outside.
const NSObject* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
