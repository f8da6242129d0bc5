#pragma once

/// Texts as plain functions see them; a `CFStringRef` is an `NSString`. Lengths and indexes are in UTF-16 units.

#include "CoreFoundation/CFBase.h"
#include "Foundation/NSString.h"

using CFStringRef = const NSString*;
using UniChar = char16_t;

enum CFStringEncoding : std::uint32_t {
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUTF8 = 0x08000100,
    kCFStringEncodingUTF32LE = 0x1c000100,
};

CFIndex CFStringGetLength(CFStringRef string); ///< 0 for null
/// Raises std::out_of_range for an index outside.
UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);

/// Converts the units of `range` into `buffer`, as many whole characters as fit into `maxBytes`; counts only where
/// `buffer` is null.
///
/// @param lossByte    stands for what the encoding lacks (in UTF-8 and UTF-32 an unpaired surrogate); 0 stops there
/// @param isExternal  whether a byte order mark may be written; none ever is
/// @param usedBytes   bytes written or counted; may be null
/// @return units converted: "a😀" to UTF-32LE gives 3, with 8 bytes used
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, std::uint8_t lossByte,
                         bool isExternal, std::uint8_t* buffer, CFIndex maxBytes, CFIndex* usedBytes);
