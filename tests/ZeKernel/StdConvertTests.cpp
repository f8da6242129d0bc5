#include "ZeString.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr int kRoom = 16;

template <typename To, typename From> std::basic_string<To> Converted(const std::basic_string<From>& text, int room)
{
    // exactly the room that is promised, so that a write past it shows
    std::vector<To> dest(static_cast<std::size_t>(std::max(room, 0)) + 1, To('?'));
    EXPECT_EQ(StdConvert(dest.data(), room, text.data(), static_cast<int>(text.size()), ZeUTF8Locale()), dest.data());
    return dest.data();
}

} // namespace

TEST(StdConvert, CarriesEveryCodePointBothWays)
{
    const auto check = [](const std::string& narrow, const std::wstring& wide) {
        EXPECT_EQ((Converted<wchar_t, char>(narrow, kRoom)), wide);
        EXPECT_EQ((Converted<char, wchar_t>(wide, kRoom)), narrow);
    };
    check("", L"");
    check("plain", L"plain");
    check("\xC3\xA9", L"\u00E9");
    check("z\xE2\x80\xAFz", L"z\u202Fz");
    check("\xF0\x9F\x98\x80", L"\U0001F600");
    check("\xF4\x8F\xBF\xBF", L"\U0010FFFF");
}

TEST(StdConvert, KeepsWhatFitsAndWhatIsWellFormed)
{
    const auto wide = [](const std::string& narrow, int room) { return Converted<wchar_t, char>(narrow, room); };
    EXPECT_EQ(wide("ab", 1), L"a");
    EXPECT_EQ(wide("ab", 0), L"");
    EXPECT_EQ(wide("ab", -1), L"");
    EXPECT_EQ(wide("a\xE2\x80", kRoom), L"a") << "cut inside a character";
    EXPECT_EQ(wide("a\x80z", kRoom), L"a") << "a byte that starts nothing";
    EXPECT_EQ(wide("a\xFFz", kRoom), L"a") << "a byte that UTF-8 lacks";
    EXPECT_EQ((Converted<char, wchar_t>(L"a\u00E9", 2)), "a") << "half a character doesn't fit";
}

TEST(StdConvert, UsesTheFacetOfTheLocale)
{
    char dest[4] = "??";
    StdConvert(dest, 3, L"a\u00E9", 2, std::locale::classic());
    EXPECT_STREQ(dest, "a") << "the classic locale knows ASCII only";
}
