#include "CoreFoundation/CFString.h"

#include <algorithm>
#include <stdexcept>

namespace {

/// The code point at `at` and the units that it takes; a lone surrogate stands for itself.
struct Point {
    char32_t value;
    std::size_t units;
    bool isLone() const { return (value & ~char32_t{0x7FF}) == 0xD800; }
};

Point PointAt(std::u16string_view text, std::size_t at)
{
    const char32_t first = text[at];
    if ((first & 0xFC00) != 0xD800 || at + 1 >= text.size() || (text[at + 1] & 0xFC00) != 0xDC00) return {first, 1};
    return {0x10000 + ((first & 0x3FF) << 10) + (text[at + 1] & char32_t{0x3FF}), 2};
}

bool Lacks(CFStringEncoding encoding, Point point)
{
    return encoding == kCFStringEncodingASCII ? point.value > 0x7F : point.isLone();
}

std::string Encode(CFStringEncoding encoding, char32_t value)
{
    if (encoding == kCFStringEncodingASCII) return {static_cast<char>(value)};
    if (encoding == kCFStringEncodingUTF8) {
        const char16_t pair[] = {static_cast<char16_t>(0xD7C0 + (value >> 10)),
                                 static_cast<char16_t>(0xDC00 + (value & 0x3FF))};
        const auto unit = static_cast<char16_t>(value);
        return NSUTF8FromUTF16(value > 0xFFFF ? std::u16string_view(pair, 2) : std::u16string_view(&unit, 1));
    }
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

} // namespace

RetainPtr<const NSString> CFStringCreateWithBytes(const std::uint8_t* bytes, CFIndex count, CFStringEncoding encoding,
                                                  bool)
{
    if (!bytes || count < 0 || count % 4 != 0 || encoding != kCFStringEncodingUTF32LE) return nullptr;
    std::u16string units;
    for (CFIndex at = 0; at < count; at += 4) {
        char32_t value = 0;
        for (unsigned byte = 0; byte < 4; ++byte) value |= char32_t{bytes[at + byte]} << 8 * byte;
        if (value > 0x10FFFF || Point{value, 1}.isLone()) return nullptr;
        if (value > 0xFFFF) units += static_cast<char16_t>(0xD7C0 + (value >> 10));
        units += static_cast<char16_t>(value > 0xFFFF ? 0xDC00 + (value & 0x3FF) : value);
    }
    return NSString::string(std::move(units));
}

CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b)
{
    const auto units = [](CFStringRef text) {
        return text ? std::u16string_view(text->units()) : std::u16string_view();
    };
    const int order = units(a).compare(units(b));
    return order < 0 ? kCFCompareLessThan : order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo;
}

CFIndex CFStringGetLength(CFStringRef string) { return string ? static_cast<CFIndex>(string->length()) : 0; }

UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index)
{
    if (!string || index < 0) throw std::out_of_range("CFStringGetCharacterAtIndex");
    return string->characterAtIndex(static_cast<std::size_t>(index));
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, std::uint8_t lossByte, bool,
                         std::uint8_t* buffer, CFIndex maxBytes, CFIndex* usedBytes)
{
    const CFIndex start = std::clamp<CFIndex>(range.location, 0, CFStringGetLength(string));
    const CFIndex length = std::clamp<CFIndex>(range.length, 0, CFStringGetLength(string) - start);
    const std::u16string_view all = string ? std::u16string_view(string->units()) : std::u16string_view();
    const std::u16string_view text = all.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
    std::size_t at = 0, used = 0;
    while (at < text.size()) {
        const Point point = PointAt(text, at);
        const bool lost = Lacks(encoding, point);
        if (lost && lossByte == 0) break;
        const std::string bytes = Encode(encoding, lost ? char32_t{lossByte} : point.value);
        if (buffer && (maxBytes < 0 || used + bytes.size() > static_cast<std::size_t>(maxBytes))) break;
        if (buffer) std::copy(bytes.begin(), bytes.end(), buffer + used);
        used += bytes.size();
        at += point.units;
    }
    if (usedBytes) *usedBytes = static_cast<CFIndex>(used);
    return static_cast<CFIndex>(at);
}
