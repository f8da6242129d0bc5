#include "ZeString.h"

#include "ZeSafeCRT.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace {

void PrintList(ZeString& out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    ZeSprintf(out, format, args);
    va_end(args);
}

[[gnu::format(printf, 2, 3)]] void PrintListA(_ZeString<char>& out, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    ZeSprintfA(out, format, args);
    va_end(args);
}

template <typename... Arguments> ZeString Printed(const wchar_t* format, Arguments... arguments)
{
    ZeString out(L"what was there before");
    ZeSprintf(out, format, arguments...);
    return out;
}

} // namespace

TEST(zeassign, TakesTailsOfTheTargetItself)
{
    const ZeString whole(std::wstring(L"12:34\0 56", 9));
    for (const std::size_t from : {0u, 3u, 9u}) { // from the second on past a NUL, from the third the empty tail
        ZeString text = whole;
        zeassign(text, text.c_str() + from);
        EXPECT_EQ(text, whole.substr(from));

        // long enough to stand in the heap, so that a stale pointer shows
        ZeString longText = ZeString(200, L'x') + whole;
        zeassign(longText, longText.c_str() + 200 + from);
        EXPECT_EQ(longText, whole.substr(from));
    }
}

TEST(zeassign, OverwritesFromOutside)
{
    ZeString wide(L"old");
    zeassign(wide, L"a longer text than the old one");
    EXPECT_EQ(wide, L"a longer text than the old one");
    zeassign(wide, nullptr);
    EXPECT_EQ(wide, L"");

    std::string narrow("12:34");
    zeassign(narrow, narrow.c_str() + 3);
    EXPECT_EQ(narrow, "34");
    zeassign(narrow, static_cast<const char*>(nullptr));
    EXPECT_EQ(narrow, "");
}

TEST(ZeSprintf, PrintsWhatTheKernelPrints)
{
    EXPECT_EQ(Printed(L"%02u:%02u:%02u:%02u", 1, 2, 3, 4), L"01:02:03:04");
    EXPECT_EQ(Printed(L"%d", 0), L"0") << "a literal 0 is a number, not a list";
    EXPECT_EQ(Printed(L"%08x %04x %02x", 0xBEEFu, 0xABu, 5u), L"0000beef 00ab 05");
    EXPECT_EQ(Printed(L"%ld%%", std::numeric_limits<long>::min()), L"-9223372036854775808%");
    EXPECT_EQ(Printed(L"%s", "\xC3\xA4\xE2\x82\xAC"), L"\u00E4\u20AC") << "narrow text is UTF-8";

    ZeString out(L"beat");
    ZeSprintf(out, L"%ls %ls", out.c_str(), out.c_str());
    EXPECT_EQ(out, L"beat beat") << "the result may be among the arguments";

    PrintList(out, L"%u.%03u", 1u, 20u);
    EXPECT_EQ(out, L"1.020");
}

TEST(ZeSprintf, PrintsNumbersAsTheCLibraryDoes)
{
    static const wchar_t* const kFormats[] = {L"%u",   L"%02u", L"%03u", L"%09u", L"%x",  L"%02x", L"%08x", L"%d",
                                              L"%03d", L"%3u",  L"%-3u", L"%+d",  L"%#x", L"%X",   L"%0u",  L"%012u",
                                              L"%.3d", L"%hhu", L"%'u",  L"%u%%", L"%u%", L"a%ub"};
    static const unsigned kNumbers[] = {0, 1, 9, 10, 99, 100, 999, 1000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (const wchar_t* format : kFormats) {
        for (const unsigned number : kNumbers) {
            SCOPED_TRACE(testing::Message() << format << " of " << number);
            wchar_t expected[64] = {};
            if (std::swprintf(expected, std::size(expected), format, number) < 0) expected[0] = 0;
            EXPECT_EQ(Printed(format, number), expected);
        }
    }
}

TEST(ZeSprintf, PrintsEveryCharacter)
{
    EXPECT_EQ(Printed(L"1%c5", 0), L"1") << "a NUL ends it";
    EXPECT_EQ(Printed(L"1%c5", L'\u20AC'), L"1\u20AC5");
    EXPECT_EQ(Printed(L"%u%c%u", 1u, L'\u066B', 5u), L"1\u066B5");
    EXPECT_EQ(Printed(L"%c", L'\U0001F600'), L"\U0001F600") << "beyond 16 bits";
    EXPECT_EQ(Printed(L"[%3c]", L'\u20AC'), L"[  \u20AC]");
    EXPECT_EQ(Printed(L"[%-*c]", 3, L'\u20AC'), L"[\u20AC  ]") << "with a flag and a width of its own";
    EXPECT_EQ(Printed(L"%2$c%1$c%2$c", L'\u20AC', L'\u00E4'), L"\u00E4\u20AC\u00E4") << "in the order of the numbers";
    EXPECT_EQ(Printed(L"%lc", L'\u20AC'), L"\u20AC") << "wide already";
    EXPECT_EQ(Printed(L"100%%c%c", L'\u20AC'), L"100%c\u20AC") << "a percent sign before a c";
    EXPECT_EQ(Printed(L"%uc", 5u), L"5c") << "a c after a conversion";
}

TEST(ZeSprintf, CutsAt1022Elements)
{
    for (const std::size_t length : {1021u, 1022u, 1023u, 1024u, 2000u}) {
        SCOPED_TRACE(length);
        std::wstring text(length, L'x');
        text[std::min<std::size_t>(length, 1022) - 1] = L'\u20AC';
        EXPECT_EQ(Printed(L"%ls", text.c_str()), text.substr(0, 1022));
        EXPECT_EQ(Printed(text.c_str()), text.substr(0, 1022)) << "as a format";
    }
}

TEST(ZeSprintf, PrintsNothingForAFormatInError)
{
    EXPECT_EQ(Printed(L"before %"), L"");
    EXPECT_EQ(Printed(L"before %2147483648d", 1), L"");
    EXPECT_EQ(Printed(L"before %s after", "\xFF"), L"") << "narrow text that is no UTF-8";
}

TEST(ZeSprintfA, CutsAt1023Bytes)
{
    _ZeString<char> out("old");
    ZeSprintfA(out, "%s", std::string(2000, 'x').c_str());
    EXPECT_EQ(out, std::string(1023, 'x'));
    ZeSprintfA(out, "%d", 0);
    EXPECT_EQ(out, "0");
    PrintListA(out, "%02x-%s", 10u, "b");
    EXPECT_EQ(out, "0a-b");
}

TEST(swprintf_s, StaysInsideTheArray)
{
    static const struct {
        std::size_t count;
        int answer;
        const wchar_t* text;
    } kRows[] = {{6, 5, L"07\u20AC-1"}, {5, -1, L"07\u20AC-"}, {1, -1, L""}, {0, -1, L""}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.count);
        wchar_t buffer[8] = L"####";
        buffer[row.count] = L'\U0010FFFF'; // must not be touched
        EXPECT_EQ(ZeCRT::swprintf_s(buffer, row.count, L"%02u%c%d", 7u, 0x20AC, -1), row.answer);
        EXPECT_EQ(buffer[row.count], L'\U0010FFFF');
        EXPECT_EQ(std::wstring(buffer, wcsnlen(buffer, row.count)), row.text);
    }
}

TEST(BoundedCopies, FillTheArrayToItsEnd)
{
    wchar_t dest[5] = {1, 1, 1, 1, 1};
    ZeString(L"abc").strcpy_s(dest, 4);
    EXPECT_STREQ(dest, L"abc");
    EXPECT_EQ(dest[4], 1);
    wcscpy_s(dest, 5, L"wxyz");
    EXPECT_STREQ(dest, L"wxyz");

    char narrow[3];
    _ZeString<char>("ab").strcpy_s(narrow, 3);
    EXPECT_STREQ(narrow, "ab");
}

TEST(BoundedCopiesDeathTest, TextThatDoesNotFitEndsTheProcess)
{
    wchar_t dest[4];
    const ZeString text(L"abcd");
    const char* const copy =
        "shared/ZeKernel/inc/ZeString:[0-9]+: strcpy_s: Assertion `this->size\\(\\) <= DestSize-1' failed";
    EXPECT_DEATH(text.strcpy_s(dest, 4), copy);
    EXPECT_DEATH(ZeString().strcpy_s(dest, 0), copy) << "an array of nothing has no room for the terminator";
    EXPECT_DEATH(wcscpy_s(dest, 4, L"abcd"),
                 "shared/ZeKernel/inc/ZeSafeCRT:[0-9]+: wcscpy_s: Assertion `cchSrc < cchDest' failed");
}
