// Bytes to text and back, in all the ways there are.

#include "CoreFoundation/CFString.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSString.h"
#include "FuzzInput.h"

#include <vector>

namespace {

void convertBoth(std::string_view bytes, int room)
{
    const int size = static_cast<int>(bytes.size());
    std::vector<wchar_t> wide(static_cast<std::size_t>(room) + 1);
    StdConvert(wide.data(), room, bytes.data(), size, ZeUTF8Locale());
    std::vector<char> narrow(static_cast<std::size_t>(room) + 1);
    StdConvert(narrow.data(), room, wide.data(), room, ZeUTF8Locale());
    std::vector<wchar_t> raw(bytes.size() / sizeof(wchar_t));
    if (!raw.empty()) std::memcpy(raw.data(), bytes.data(), raw.size() * sizeof(wchar_t));
    StdConvert(narrow.data(), room, raw.data(), static_cast<int>(raw.size()), ZeUTF8Locale());
}

void convertText(const NSString* text)
{
    const ZeString elements(text);
    const NSString* const back = elements;
    ZeString assigned;
    zeassign(assigned, text);
    FuzzExpect(assigned.size() <= text->length(), "an element a unit");
    FuzzExpect(NSUTF8FromUTF16(NSUTF16FromUTF8(text->utf8())) == text->utf8(), "UTF-8 of a text comes back");
    for (const auto encoding : {NSASCIIStringEncoding, NSUTF8StringEncoding, NSUTF32LittleEndianStringEncoding})
        text->cStringUsingEncoding(encoding);
    FuzzExpect(back->length() == elements.substr(0, elements.find(L'\0')).size(), "a unit an element, up to a NUL");
    text->doubleValue();
    text->intValue();
}

void convertBuffer(const NSString* text, CFIndex room)
{
    for (const auto encoding : {kCFStringEncodingASCII, kCFStringEncodingUTF8, kCFStringEncodingUTF32LE}) {
        std::vector<std::uint8_t> buffer(static_cast<std::size_t>(room) + 1); // never null
        CFIndex used = 0;
        const CFRange all = {0, CFStringGetLength(text)};
        const CFIndex done = CFStringGetBytes(text, all, encoding, '?', false, buffer.data(), room, &used);
        FuzzExpect(done <= all.length && used <= room, "no more is converted than there is and fits");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const NSAutoreleasePool pool;
    FuzzInput input(data, size);
    const int room = input.take<std::uint8_t>();
    const std::string_view bytes = input.rest();
    convertBoth(bytes, room);
    convertText(NSString::string(bytes).get());

    std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
    if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
    const RetainPtr<NSString> text = NSString::string(units);
    convertText(text.get());
    convertBuffer(text.get(), room);
    CFStringCreateWithBytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<CFIndex>(bytes.size()),
                            kCFStringEncodingUTF32LE, false);
    return 0;
}
