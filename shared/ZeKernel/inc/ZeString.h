#pragma once

/// The kernel's text: a class over the standard string, assignment from raw pointers, formatted printing, the text form
/// of identifiers, and conversion between encodings.
///
/// A `ZeString` holds one Unicode code point in each of its 32-bit elements; copies are independent. A function that
/// produces text takes the result as its first parameter and overwrites it. The conversions from and to the platform's
/// strings need the platform's library when they are linked, never its headers here.
///
/// Failure: printing cuts or empties the text and says nothing, as do reading an identifier and converting; a bounded
/// copy that doesn't fit is a fatal assertion.

#include "ZeAssert.h"

#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <locale>
#include <string>
#include <utility>

class NSString;
using CFStringRef = const NSString*;

template <typename Ch> class _ZeString : public std::basic_string<Ch> {
    using Base = std::basic_string<Ch>;

public:
    using Base::Base;
    using Base::operator=;
    _ZeString() = default;
    _ZeString(const Base& text) : Base(text) {}
    _ZeString(Base&& text) noexcept : Base(std::move(text)) {}

    /// The text of `s`, one element a code point; null gives the empty string.
    _ZeString(const NSString* s) requires std::same_as<Ch, wchar_t>;

    /// An autoreleased string of 16-bit units: each element up to the first NUL, narrowed to its low 16 bits. No
    /// surrogate pairs are made: U+1F600 becomes the unit F600.
    operator NSString*() const requires std::same_as<Ch, wchar_t>;

    /// Copies the characters and a terminator to `dest`, an array of `DestSize` elements. Needs DestSize > size().
    void strcpy_s(Ch* dest, std::size_t DestSize) const
    {
        if (DestSize == 0 || !(this->size() <= DestSize - 1))
            ZeCRT::assertionFailed("this->size() <= DestSize-1", "shared/ZeKernel/inc/ZeString", __LINE__, "strcpy_s");
        this->copy(dest, this->size());
        dest[this->size()] = Ch();
    }
};

using ZeString = _ZeString<wchar_t>;
static_assert(sizeof(wchar_t) == 4 && sizeof(ZeString) == sizeof(std::wstring));

/// Assigns terminated text. Null empties the target. A source inside the target's own characters, the end included,
/// leaves the target's tail from there: after zeassign(s, L"12:34"), zeassign(s, s.c_str() + 3) leaves "34".
void zeassign(std::basic_string<wchar_t>& target, const wchar_t* source);
void zeassign(std::basic_string<char>& target, const char* source);
inline void zeassign(std::basic_string<wchar_t>& target, std::nullptr_t) { target.clear(); }

/// Assigns the UTF-16 units of `source`, one an element, up to the first NUL: U+1F600 arrives as D83D DE00. Null
/// empties the target. Where there is no memory for the units the target stays as it is.
void zeassign(std::basic_string<wchar_t>& target, CFStringRef source);

/// Prints as the C library does (and `%c` takes any code point), at most 1022 elements: longer text is cut, a format in
/// error gives the empty string. Sets the process's character locale to UTF-8.
///
/// ZeSprintf(out, L"%02u:%02u:%02u:%02u", 1, 2, 3, 4) gives "01:02:03:04".
void ZeSprintf(ZeString& out, const wchar_t* format, ...);
void ZeVSprintf(ZeString& out, const wchar_t* format, va_list args);

/// The narrow twin, at most 1023 bytes; leaves the locale alone.
[[gnu::format(printf, 2, 3)]] void ZeSprintfA(_ZeString<char>& out, const char* format, ...);
[[gnu::format(printf, 2, 0)]] void ZeVSprintfA(_ZeString<char>& out, const char* format, va_list args);

// The forms that take a list. Templates, so that a literal 0 as the only argument is printed and not taken for a null
// list.
template <typename List>
requires requires(ZeString& out, List args) { ZeVSprintf(out, L"", args); }
void ZeSprintf(ZeString& out, const wchar_t* format, List args) { ZeVSprintf(out, format, args); }
template <typename List>
requires requires(_ZeString<char>& out, List args) { ZeVSprintfA(out, "", args); }
void ZeSprintfA(_ZeString<char>& out, const char* format, List args) { ZeVSprintfA(out, format, args); }

/// A globally unique identifier; the numbers stand in the byte order of the machine.
struct _GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(_GUID) == 16);

/// 36 characters, lower case, no braces: "6ba7b810-9dad-11d1-80b4-00c04fd430c8".
void ZeGuidToString(ZeString& out, const _GUID& g);
void ZeGuidToStringA(_ZeString<char>& out, const _GUID& g);

/// Reads that form, in capitals or not, with blanks in front of any number. Fields that the text doesn't supply become
/// 0: "6ba7b810-9d" leaves all but the first two 0.
void ZeGuidFromString(const ZeString& text, _GUID& g);
void ZeGuidFromStringA(const _ZeString<char>& text, _GUID& g);

/// Converts `srcCount` characters with the locale's conversion facet and ends them with a 0. `dest` has room for
/// destCount + 1 characters. Conversion ends early where `src` is malformed or cut, or `dest` is full; what was
/// converted stays. Throws std::bad_cast where `loc` has no such facet. @return `dest`
wchar_t* StdConvert(wchar_t* dest, int destCount, const char* src, int srcCount, const std::locale& loc);
char* StdConvert(char* dest, int destCount, const wchar_t* src, int srcCount, const std::locale& loc);

/// A locale for `StdConvert`: UTF-8 on the narrow side, one element a code point on the wide one; otherwise classic.
/// It converts "\xC3\xA9" to U+00E9.
const std::locale& ZeUTF8Locale();
