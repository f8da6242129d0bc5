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

enum CFComparisonResult : CFIndex { kCFCompareLessThan = -1, kCFCompareEqualTo, kCFCompareGreaterThan };

/// Text from `count` bytes of UTF-32LE; a byte order mark is a character like any other. Null for null, for a count
/// that is negative or no multiple of 4, for a surrogate or a value past U+10FFFF, and for other encodings.
///
/// 61 00 00 00, 00 F6 01 00 gives "a😀", three units.
RetainPtr<const NSString> CFStringCreateWithBytes(const std::uint8_t* bytes, CFIndex count, CFStringEncoding encoding,
                                                  bool isExternal);

/// The order of the texts by their units, without regard to language; null counts as empty.
CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b);

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
