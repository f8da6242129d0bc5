#include "PosFmtFixture.h"

#include <cmath>
#include <limits>

TEST(myatof, ReadsOneNumber)
{
    static const struct {
        const wchar_t* text;
        double value;
        wchar_t stop;
        const wchar_t* left; // of the text
    } kRows[] = {
        {L"1,234.5", 1234.5, 0, L"1,234.5"},
        {L"  7 %", 7, 0, L"  7"},
        {L"12:30", 12, L':', L"12:30"},
        {L"-12:30", 12, L':', L"-12:30"}, // loses its sign there
        {L"-1.25", -1.25, 0, L"-1.25"},
        {L"1.5 6", 1.5, L' ', L"1.5 6"},
        {L"5.", 5, 0, L"5."},
        {L"", 0, 0, L""},
        {L" \t", 0, 0, L" \t"},
        {L"%", 0, 0, L""},
        {L"1.2.3", 1, L'.', L"1.2.3"},
        {L"1,2.3,4", 12.3, L',', L"1,2.3,4"},
        {L"123456789012345678901234567890", 123456789012345678901234567890., 0, L"123456789012345678901234567890"},
    };
    for (const auto& row : kRows) {
        ZeString text = row.text;
        double value = 9;
        EXPECT_EQ(myatof(text.data(), &value, L'.', L','), row.stop) << text;
        EXPECT_NEAR(value, row.value, std::abs(row.value) * 1e-15 + 6e-12) << text;
        EXPECT_EQ(ZeString(text.c_str()), row.left);
    }
    double value = 9;
    EXPECT_EQ(myatof(nullptr, &value, L'.', L','), 0);
    EXPECT_EQ(value, 0);
    ZeString thousandth = L"1.001";
    myatof(thousandth.data(), &value, L'.', L',');
    EXPECT_EQ(std::trunc((value - 1) * 1000), 1);
}

TEST(PrettyNumber, GroupsDigits)
{
    const auto pretty = [](ZeString number, const ZeString& group = kComma) {
        const int length = PrettyNumber(number, kPoint, group);
        EXPECT_EQ(length, static_cast<int>(number.size()));
        return number;
    };
    EXPECT_EQ(pretty(L"1234567"), L"1,234,567");
    EXPECT_EQ(pretty(L"-1234"), L"-1,234");
    EXPECT_EQ(pretty(L"1000", L"\u202f"), L"1\u202f000");
    EXPECT_EQ(pretty(L"1234.5678"), L"1,234.5678");
    EXPECT_EQ(pretty(L""), L"0");
    EXPECT_EQ(pretty(L"  12345  "), L"  12,345");
    EXPECT_EQ(pretty(L"0001234"), L"0001,234");
    EXPECT_EQ(pretty(L"0.1234"), L"0.1234");
    EXPECT_EQ(pretty(L"1234567", L""), L"1234567");
    const ZeString cut = pretty(ZeString(78, L'1'));
    EXPECT_EQ(cut.size(), 79u);
    EXPECT_EQ(cut.substr(0, 8) + cut.substr(75), L"111,111,,111");
}

TEST(FormatFloatPretty, WritesAnyValue)
{
    const auto written = [](double value, const wchar_t* pattern, const ZeString& decimal = kPoint,
                            const ZeString& group = kComma, bool groups = true) {
        ZeString out = L"something longer than any of the results can be";
        FormatFloatPretty(out, value, pattern, decimal, group, groups);
        return out;
    };
    EXPECT_EQ(written(-1234.5, L"#.###"), L"1,234.500");
    EXPECT_EQ(written(1234567.891, L"####.######"), L"1,234,567.891000");
    EXPECT_EQ(written(0.0005, L"#.###"), L"0.001");
    EXPECT_EQ(written(0.125, L"###.##"), L"0.12") << "the half of a 32-bit float falls short of it";
    EXPECT_EQ(written(999.9999, L"#.###"), L"1,000.000");
    EXPECT_EQ(written(4294967296.25, L"###.##"), L"4,294,967,296.25");
    EXPECT_EQ(written(1e300, L"#.#"), L"9,223,372,036,854,775,807.9");
    EXPECT_EQ(written(HUGE_VAL, L"#.#"), L"9,223,372,036,854,775,807.9");
    EXPECT_EQ(written(std::nan(""), L"#.##"), L"0.00");
    EXPECT_EQ(written(1.0 / 3, L"#.############"), L"0.333333333");
    EXPECT_EQ(written(1234.5, L"#.###", kPoint, kComma, false), L"1234.500");
    EXPECT_EQ(written(1234.5, L"#.###", L"\u066b", L"\u2019"), L"1\u2019234\u066b500");
    EXPECT_EQ(written(1234.75, L"#.###", kNothing, kNothing), L"1234");
}
