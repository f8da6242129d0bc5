#include "Foundation/NSString.h"

#include "CoreFoundation/CFString.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

namespace {

std::u16string Units(std::string_view utf8) { return NSUTF16FromUTF8(utf8); }

TEST(NSString, ConvertsBetweenEncodings)
{
    static const struct {
        const char* why;
        std::string utf8;
        std::u16string units;
    } kRows[] = {
        {"a character outside the first plane is a pair", "a😀", u"a\xD83D\xDE00"},
        {"a zero in the middle stays", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"nothing", "", u""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(Units(row.utf8), row.units);
        EXPECT_EQ(NSUTF8FromUTF16(row.units), row.utf8);
    }
    EXPECT_EQ(Units("a\xC3"), u"a\xFFFD");                          // cut off
    EXPECT_EQ(Units("\xC0\x80").find(u'\0'), std::u16string::npos); // overlong
    EXPECT_EQ(NSUTF8FromUTF16(u"\xDE00z"), "\xEF\xBF\xBDz");
}

TEST(NSString, CTextEndsWithAZeroOfItsEncoding)
{
    using namespace std::string_literals;
    const auto text = "ä😀"_ns, lone = NSString::string(std::u16string(u"\xD83Dz"));
    EXPECT_EQ(text->cStringUsingEncoding(NSUTF32LittleEndianStringEncoding), "\xE4\0\0\0\x00\xF6\x01\0\0\0\0\0"s);
    EXPECT_EQ(lone->cStringUsingEncoding(NSUTF32LittleEndianStringEncoding), "\x3D\xD8\0\0z\0\0\0\0\0\0\0"s);
    EXPECT_EQ(text->cStringUsingEncoding(NSUTF8StringEncoding), "ä😀\0"s);
    EXPECT_EQ(lone->cStringUsingEncoding(NSUTF8StringEncoding), "");
    EXPECT_EQ(text->cStringUsingEncoding(NSASCIIStringEncoding), "");
    EXPECT_EQ("a"_ns->cStringUsingEncoding(NSASCIIStringEncoding), "a\0"s);
}

TEST(NSString, ReadsTheLeadingNumber)
{
    static const struct {
        const char* text;
        double real;
        std::int32_t integer;
    } kRows[] = {
        {" 12.5 dB", 12.5, 12},
        {"-.5", -0.5, 0},
        {"+3", 3, 3},
        {"1e3", 1000, 1},
        {"1e", 1, 1},
        {"1e+x", 1, 1},
        {"1,5", 1, 1},
        {"1e999", HUGE_VAL, 1},
        {"-99999999999999999999", -1e20, std::numeric_limits<std::int32_t>::min()},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(NSString::string(row.text)->doubleValue(), row.real) << row.text;
        EXPECT_EQ(NSString::string(row.text)->intValue(), row.integer) << row.text;
    }
    for (const char* text : {"0x10", "inf", "nan", ".", "--1", ""})
        EXPECT_EQ(NSString::string(text)->doubleValue(), 0) << text;
}

TEST(NSString, FormatsAndCompares)
{
    const auto text = NSString::stringWithFormat("%.2f %s %ls", 0.5, "ä", L"€");
    EXPECT_EQ(text->utf8(), "0.50 ä €");
    EXPECT_TRUE(text->hasPrefix("0.5"_ns.get()));
    EXPECT_FALSE(text->hasPrefix("0.50 ä € and more"_ns.get()));
    EXPECT_TRUE("a"_ns->isEqual("a"_ns.get()));
    EXPECT_EQ("a"_ns->hash(), "a"_ns->hash());
    EXPECT_FALSE("a"_ns->isEqual(nullptr));
    EXPECT_EQ(make<NSString>(&NSString::initWithCharacters, u"\xD83Dz", 1u)->units(), u"\xD83D");
}

struct Bytes {
    CFIndex converted, used;
    std::string bytes;
    bool operator==(const Bytes&) const = default;
};

Bytes BytesOf(const NSString* text, CFRange range, CFStringEncoding encoding, std::uint8_t lossByte, CFIndex room)
{
    std::string buffer(static_cast<std::size_t>(room), '\0');
    CFIndex used = -1;
    const CFIndex converted = CFStringGetBytes(text, range, encoding, lossByte, false,
                                               reinterpret_cast<std::uint8_t*>(buffer.data()), room, &used);
    buffer.resize(static_cast<std::size_t>(used));
    return {converted, used, buffer};
}

TEST(CFString, ConvertsWholeCharactersAsFarAsTheyFit)
{
    using namespace std::string_literals;
    const auto text = "a😀ä"_ns, lone = NSString::string(std::u16string(u"a\xD83D"));
    constexpr auto kWide = kCFStringEncodingUTF32LE;
    EXPECT_EQ(BytesOf(text, {0, 4}, kWide, '?', 99), (Bytes{4, 12, "a\0\0\0\x00\xF6\x01\0\xE4\0\0\0"s}));
    EXPECT_EQ(BytesOf(text, {0, 4}, kWide, '?', 7), (Bytes{1, 4, "a\0\0\0"s}));
    EXPECT_EQ(BytesOf(text, {0, 4}, kCFStringEncodingUTF8, 0, 99), (Bytes{4, 7, "a😀ä"}));
    EXPECT_EQ(BytesOf(text, {0, 4}, kCFStringEncodingUTF8, 0, 4), (Bytes{1, 1, "a"}));
    EXPECT_EQ(BytesOf(text, {0, 4}, kCFStringEncodingASCII, '?', 99), (Bytes{4, 3, "a??"}));
    EXPECT_EQ(BytesOf(text, {0, 4}, kCFStringEncodingASCII, 0, 99), (Bytes{1, 1, "a"}));
    EXPECT_EQ(BytesOf(lone, {0, 2}, kWide, '?', 99), (Bytes{2, 8, "a\0\0\0?\0\0\0"s}));
    EXPECT_EQ(BytesOf(text, {3, 99}, kCFStringEncodingUTF8, 0, 99), (Bytes{1, 2, "ä"}));
    EXPECT_EQ(BytesOf(text, {-5, -1}, kWide, '?', 99), (Bytes{0, 0, ""}));
    CFIndex used = 0;
    EXPECT_EQ(CFStringGetBytes(text, {0, 4}, kWide, '?', false, nullptr, 0, &used), 4);
    EXPECT_EQ(used, 12);
    EXPECT_EQ(CFStringGetLength(text), 4);
    EXPECT_EQ(CFStringGetCharacterAtIndex(text, 1), u'\xD83D');
    EXPECT_EQ(CFStringGetLength(nullptr), 0);
}

} // namespace
