#include "CoreFoundation/CFString.h"

#include <cstring>

namespace {

struct Character {
    char32_t value;
    CFIndex units; // 0 for an unpaired surrogate without a stand-in
};

Character CharacterAt(std::u16string_view units, unsigned char lossByte)
{
    const char32_t first = units[0];
    if (first < 0xD800 || first > 0xDFFF) return {first, 1};
    const char32_t second = units.size() > 1 ? units[1] : 0;
    if (first < 0xDC00 && second >= 0xDC00 && second <= 0xDFFF)
        return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 2};
    return {lossByte, lossByte ? 1 : 0};
}

} // namespace

CFIndex CFStringGetLength(CFStringRef string) { return string ? static_cast<CFIndex>(string->length()) : 0; }

unichar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index)
{
    return string->characterAtIndex(static_cast<std::size_t>(index));
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, unsigned char lossByte, bool,
                         unsigned char* buffer, CFIndex maxBufferLength, CFIndex* usedBufferLength)
{
    const std::u16string_view all = string ? std::u16string_view(string->units()) : std::u16string_view();
    std::u16string_view rest =
        all.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    constexpr CFIndex kSize = sizeof(char32_t);
    CFIndex converted = 0;
    CFIndex used = 0;
    while (!rest.empty() && (!buffer || maxBufferLength - used >= kSize)) {
        const Character character = CharacterAt(rest, lossByte);
        if (character.units == 0) break;
        if (buffer) std::memcpy(buffer + used, &character.value, kSize);
        used += kSize;
        converted += character.units;
        rest.remove_prefix(static_cast<std::size_t>(character.units));
    }
    if (usedBufferLength) *usedBufferLength = used;
    return converted;
}
