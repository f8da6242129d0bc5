#pragma once

/// Immutable text of UTF-16 units.

#include "Foundation/NSObject.h"

#include <string>
#include <string_view>

using unichar = char16_t;

enum NSStringEncoding : unsigned {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSUTF32LittleEndianStringEncoding = 0x9c000100,
};

class NSString final : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    NSString() = default;

    /// Text from UTF-8; a malformed sequence becomes U+FFFD.
    static RetainPtr<NSString> string(std::string_view utf8);
    static RetainPtr<NSString> string(std::u16string units);
    /// Formatted as the C library does, in the classic locale ('.' as decimal point), from UTF-8.
    [[gnu::format(printf, 1, 2)]] static RetainPtr<NSString> stringWithFormat(const char* format, ...);

    /// Copies `length` units as they are, unpaired surrogates included.
    bool initWithCharacters(const unichar* characters, std::size_t length);

    std::size_t length() const { return mUnits.size(); } ///< in UTF-16 units
    unichar characterAtIndex(std::size_t index) const { return mUnits.at(index); }
    const std::u16string& units() const { return mUnits; }
    std::string utf8() const; ///< an unpaired surrogate becomes U+FFFD
    /// The text in another encoding with its terminator (one zero byte, four for UTF-32): one 32-bit element a code
    /// point. Empty when the text has a character that the encoding lacks; an unpaired surrogate is one UTF-32 element.
    std::string cStringUsingEncoding(NSStringEncoding encoding) const;

    bool isEqualToString(const NSString* other) const;
    bool hasPrefix(const NSString* prefix) const;
    // Reads as much of a leading number as there is, '.' as decimal point; 0 when there is none.
    double doubleValue() const;
    std::int32_t intValue() const;

    bool isEqual(const NSObject* other) const override;
    std::size_t hash() const override;
    RetainPtr<NSString> description() const override;

private:
    std::u16string mUnits;
};

/// `"text"_ns`: text from a UTF-8 literal.
RetainPtr<NSString> operator""_ns(const char* utf8, std::size_t length);

// Conversions outside objects.
std::string NSUTF8FromUTF16(std::u16string_view units);
std::u16string NSUTF16FromUTF8(std::string_view utf8);
