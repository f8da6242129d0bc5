#include "PosFmtFixture.h"

#include <cmath>
#include <limits>

namespace {

constexpr int kSeconds = QVPOSFMT_TIME_METRIC, kFrames = QVPOSFMT_FRAMES_METRIC, kPercent = QVPOSFMT_PERCENT;

} // namespace

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
        {L"3 4", 3, L'4', L"3 4"},
        {L"12:30", 12, L':', L"12:30"},
        {L"-12:30", 12, L':', L"-12:30"}, // loses its sign there
        {L"-1.25", -1.25, 0, L"-1.25"},
        {L"-1.25x", -1.25, L'x', L"-1.25x"},
        {L"1.5 6", 1.5, L' ', L"1.5 6"},
        {L".5", 0.5, 0, L".5"},
        {L"5.", 5, 0, L"5."},
        {L"", 0, 0, L""},
        {L" \t", 0, 0, L" \t"},
        {L"%", 0, 0, L""},
        {L"1.2.3", 1, L'.', L"1.2.3"},
        {L"1,2.3,4", 12.3, L',', L"1,2.3,4"},
        {L"123456789012345678901234567890", 123456789012345678901234567890., 0, L"123456789012345678901234567890"},
        {L"0.1234567890123456789012345", 0.1234567890123456789012345, 0, L"0.1234567890123456789012345"},
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

TEST(Metric, WritesPositions)
{
    static const struct {
        int format;
        long long position;
        unsigned flags;
        const wchar_t* text;
    } kRows[] = {
        {kSeconds, 72000, 0, L"1.500000"},
        {kSeconds, -72000, 0, L"1.500000"},
        {kSeconds, 72000, kPosFmtWholeUnits, L"2"},
        {kSeconds, 72000, kPosFmtWholeUnits | kPosFmtShort, L"1.500"},
        {kSeconds, 48000LL * 1234567, kPosFmtLength, L"1,234,567.000000"},
        {kFrames, 72000, 0, L"37.500"},
        {kFrames, 72000, kPosFmtWholeUnits | kPosFmtShort, L"38"},
        {kPercent, 24000, 0, L"50.00 %"},
        {kPercent, 24000, kPosFmtWholeUnits, L"50 %"},
        {kPercent, -48000 * 20, 0, L"2,000.00 %"},
        {QVPOSFMT_TIME, 0, 0, L"untouched"},
    };
    for (const auto& row : kRows) {
        ZeString out = L"untouched";
        Metric_ToString(out, Format(row.format), row.position, kPoint, kComma, row.flags);
        EXPECT_EQ(out, row.text);
    }
}

TEST(Metric, ReadsWithAReason)
{
    static const struct {
        int format;
        const wchar_t* text;
        const char* said;
    } kRows[] = {
        {kSeconds, L"1.5", "accepted 72000"},
        {kSeconds, L"-1.5", "accepted -72000"},
        {kSeconds, L"1,234.5", "accepted 59256000"},
        {kSeconds, L"0.00003", "accepted 1"}, // 1.44 samples are truncated
        {kSeconds, L"", "accepted 0"},
        {kPercent, L" 50 % ", "accepted 24000"},
        {kFrames, L"30", "accepted 57600"},
        {kSeconds, L"1.5x", "refused 72000 at 3: unexpected character"},
        {kSeconds, L"x", "refused 0 at 0: unexpected character"},
        {kSeconds, L"3 4", "refused 144000 at 2: unexpected character"},
        {kSeconds, L"- 3", "refused 0 at 2: unexpected character"},
        {QVPOSFMT_MEASURES, L"1", "refused 0 at 0: this format has no text"},
    };
    for (const auto& row : kRows) {
        const PosFmtReading reading = Metric_Read(row.text, Format(row.format), kPoint, kComma, 0);
        EXPECT_EQ(Said(reading, row.text), row.said) << ZeString(row.text);
    }
}

TEST(Metric, RefusesText)
{
    const Format seconds(kSeconds);
    EXPECT_EQ(Said(Metric_Read(L"1.2.3", seconds, kPoint, kComma, 0), L"1.2.3"),
              "refused 48000 at 3: second decimal separator");
    for (const ZeString& text : {ZeString(L"1.2.3"), ZeString(L"1x"), ZeString(80, L'1')})
        EXPECT_EQ(Metric_ToNumber(text, seconds, kPoint, kComma, 0), 0) << text;
    EXPECT_EQ(Metric_ToNumber(ZeString(78, L'0') + L"1", seconds, kPoint, kComma, 0), 48000);
}

TEST(PrettyNumber, GroupsDigits)
{
    static const struct {
        const wchar_t* number;
        const wchar_t* group;
        const wchar_t* pretty;
    } kRows[] = {
        {L"1234567", L",", L"1,234,567"},
        {L"-1234", L",", L"-1,234"},
        {L"123", L",", L"123"},
        {L"-123", L",", L"-123"},
        {L"1000", L"\u202f", L"1\u202f000"},
        {L"1234.5678", L",", L"1,234.5678"},
        {L"-1234567.25", L",", L"-1,234,567.25"},
        {L"", L",", L"0"},
        {L" \t", L",", L"0"},
        {L"0", L",", L"0"},
        {L"  12345  ", L",", L"  12,345"},
        {L"0001234", L",", L"0001,234"},
        {L"0.1234", L",", L"0.1234"},
        {L"1234567", L"", L"1234567"},
    };
    for (const auto& row : kRows) {
        ZeString text = row.number;
        EXPECT_EQ(PrettyNumber(text, kPoint, row.group), static_cast<int>(ZeString(row.pretty).size()));
        EXPECT_EQ(text, row.pretty);
    }
    ZeString longText(78, L'1');
    EXPECT_EQ(PrettyNumber(longText, kPoint, kComma), 79);
    EXPECT_EQ(longText.substr(0, 8) + longText.substr(75), L"111,111,,111");
}

TEST(FormatFloatPretty, WritesAnyValue)
{
    static const struct {
        double value;
        const wchar_t* pattern;
        const wchar_t* text;
    } kRows[] = {
        {1234.5, L"#.###", L"1,234.500"},
        {-1234.5, L"#.###", L"1,234.500"},
        {1234567.891, L"####.######", L"1,234,567.891000"},
        {2.5, L"#", L"3"},
        {0.0005, L"#.###", L"0.001"},
        {0.125, L"###.##", L"0.12"}, // the half of a 32-bit float falls short of it
        {0.135, L"###.##", L"0.13"},
        {-0.004, L"###.##", L"0.00"},
        {999.9999, L"#.###", L"1,000.000"},
        {1000000000, L"#", L"1,000,000,000"},
        {4294967296.25, L"###.##", L"4,294,967,296.25"},
        {1e300, L"#.#", L"9,223,372,036,854,775,807.9"},
        {std::numeric_limits<double>::infinity(), L"#.#", L"9,223,372,036,854,775,807.9"},
        {std::nan(""), L"#.##", L"0.00"},
        {1.0 / 3, L"#.#########", L"0.333333333"},
        {1.0 / 3, L"#.############", L"0.333333333"},
    };
    for (const auto& row : kRows) {
        ZeString out = L"something longer than any of the results can be";
        FormatFloatPretty(out, row.value, row.pattern, kPoint, kComma, true);
        EXPECT_EQ(out, row.text);
    }
    ZeString out;
    FormatFloatPretty(out, 1234.5, L"#.###", kPoint, kComma, false);
    EXPECT_EQ(out, L"1234.500");
    FormatFloatPretty(out, 1234.5, L"#.###", L"\u066b", L"\u2019", true);
    EXPECT_EQ(out, L"1\u2019234\u066b500");
    FormatFloatPretty(out, 1234.75, L"#.###", kNothing, kNothing, true);
    EXPECT_EQ(out, L"1234");
}
