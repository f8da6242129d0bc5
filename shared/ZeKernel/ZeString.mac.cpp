#include "ZeString.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <new>

#include "CoreFoundation/CFString.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSString.h"

static_assert(std::endian::native == std::endian::little, "UTF-32LE is taken for the elements of a ZeString");

template <typename Ch> _ZeString<Ch>::_ZeString(const NSString* s) requires std::same_as<Ch, wchar_t>
{
    if (!s) return;
    const std::string bytes = s->cStringUsingEncoding(NSUTF32LittleEndianStringEncoding);
    if (bytes.empty()) return;
    this->resize(bytes.size() / sizeof(wchar_t) - 1); // without the terminator
    std::memcpy(this->data(), bytes.data(), this->size() * sizeof(wchar_t));
}

template <typename Ch> _ZeString<Ch>::operator NSString*() const requires std::same_as<Ch, wchar_t>
{
    const std::size_t length = std::min(this->find(L'\0'), this->size());
    std::u16string units(length, u'\0');
    std::transform(this->begin(), this->begin() + static_cast<std::ptrdiff_t>(length), units.begin(),
                   [](wchar_t element) { return static_cast<unichar>(element); });
    return NSAutorelease(make<NSString>(&NSString::initWithCharacters, units.data(), length));
}

template _ZeString<wchar_t>::_ZeString(const NSString*);
template _ZeString<wchar_t>::operator NSString*() const;

void zeassign(std::basic_string<wchar_t>& target, CFStringRef source)
{
    const CFIndex length = CFStringGetLength(source);
    const auto count = static_cast<std::size_t>(length) + 1;
    const std::unique_ptr<wchar_t[]> elements(new (std::nothrow) wchar_t[count]);
    if (!elements) return;
    const CFIndex converted = CFStringGetBytes(source, {0, length}, kCFStringEncodingUTF32LE, '?', false,
                                               reinterpret_cast<unsigned char*>(elements.get()),
                                               static_cast<CFIndex>(count * sizeof(wchar_t)), nullptr);
    // Units, not the code points just converted: a pair of surrogates stays two elements.
    for (CFIndex i = 0; i < converted; ++i)
        elements[static_cast<std::size_t>(i)] = CFStringGetCharacterAtIndex(source, i);
    elements[static_cast<std::size_t>(converted)] = 0;
    zeassign(target, elements.get());
}
