#include "CoreFoundation/CFBundle.h"

#include <gmock/gmock.h>

namespace {

TEST(CFString, IsMadeFromWideBytesThatAreUnicode)
{
    const auto make = [](const std::u32string& text, CFIndex count, CFStringEncoding encoding) {
        return CFStringCreateWithBytes(reinterpret_cast<const std::uint8_t*>(text.data()), count, encoding, false);
    };
    const auto units = [&](const std::u32string& text) {
        const auto string = make(text, static_cast<CFIndex>(text.size() * 4), kCFStringEncodingUTF32LE);
        return string ? string->units() : u"refused";
    };
    EXPECT_EQ(units(U""), u"");
    EXPECT_EQ(units(U"\uFEFFa\U0001F600\U0010FFFF"), u"\uFEFFa\U0001F600\U0010FFFF");
    EXPECT_EQ(units({char32_t{0xD7FF}, char32_t{0xE000}}), u"\uD7FF\uE000");
    for (const char32_t value : {0xD800U, 0xDFFFU, 0x110000U}) EXPECT_EQ(units({U'a', value}), u"refused");
    EXPECT_FALSE(make(U"ab", 7, kCFStringEncodingUTF32LE));
    EXPECT_FALSE(make(U"ab", -4, kCFStringEncodingUTF32LE));
    EXPECT_FALSE(make(U"ab", 8, kCFStringEncodingUTF8));
    EXPECT_FALSE(CFStringCreateWithBytes(nullptr, 0, kCFStringEncodingUTF32LE, false));
}

TEST(CFBundle, WithoutAnIdentifierIsNotFound)
{
    const auto nameless = make<NSBundle>();
    NSBundle::registerBundle(nameless); // under an empty identifier
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(""_ns.get()), nullptr);
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(nullptr), nullptr);
}

} // namespace
