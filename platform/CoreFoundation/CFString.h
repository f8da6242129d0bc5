#pragma once

/// Text as the C-style functions see it. A `CFStringRef` is an `NSString`; lengths and positions count UTF-16 units.
///
/// Failure: a null string has length 0; a range or an index outside the text raises what `NSString` raises.

#include "Foundation/NSString.h"

using CFStringRef = const NSString*;
using CFIndex = long;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

enum CFStringEncoding : std::uint32_t { kCFStringEncodingUTF32LE = 0x1c000100 };

CFIndex CFStringGetLength(CFStringRef string);
unichar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);

/// Converts the units of `range` to `encoding`, as many whole characters as fit in `maxBufferLength` bytes.
///
/// @param lossByte  written for an unpaired surrogate; 0 stops the conversion there
/// @param isExternalRepresentation  makes no difference for an encoding with a given byte order
/// @param buffer  receives the bytes; null only counts
/// @param usedBufferLength  receives their number; may be null
/// @return how many UTF-16 units were converted
///
/// U+1F600 in UTF-32LE is 4 bytes, and the answer is 2.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, unsigned char lossByte,
                         bool isExternalRepresentation, unsigned char* buffer, CFIndex maxBufferLength,
                         CFIndex* usedBufferLength);
