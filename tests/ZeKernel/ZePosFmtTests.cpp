#include "Foundation/NSNumber.h"
#include "HeapRequests.h"
#include "PosFmtFixture.h"
#include "ScopedLocale.h"

#include <cmath>
#include <limits>
#include <map>

namespace {

constexpr long long kLowest = std::numeric_limits<long long>::min();
constexpr long long kHighest = std::numeric_limits<long long>::max();
constexpr double kNtsc = 29.97002997002997;

std::string Narrow(const ZeString& text)
{
    std::string bytes(text.size() * 4 + 1, '\0');
    return StdConvert(bytes.data(), static_cast<int>(bytes.size() - 1), text.data(), static_cast<int>(text.size()),
                      ZeUTF8Locale());
}

/// Text written with ',' and '.', in the separators of a locale.
ZeString WithSeparators(ZeString text, wchar_t decimal, wchar_t thousands)
{
    for (wchar_t& c : text) c = c == L'.' ? decimal : c == L',' ? thousands : c;
    return text;
}

struct LocaleRow {
    const char* name;
    wchar_t decimal, thousands;
    const wchar_t* count; ///< 1234567
};
constexpr LocaleRow kLocales[] = {
    {"en_US.UTF-8", L'.', L',', L"1,234,567"},
    {"de_DE.UTF-8", L',', L'.', L"1.234.567"},
    {"fr_FR.UTF-8", L',', L'\u202F', L"1\u202F234\u202F567"},
    {"de_CH.UTF-8", L'.', L'\u2019', L"1\u2019234\u2019567"},
    {"de_AT.UTF-8", L',', L'\u00A0', L"1\u00A0234\u00A0567"},
    {"ar_EG.UTF-8", L'\u066B', L'\u066C', L"\u0661\u066C\u0662\u0663\u0664\u066C\u0665\u0666\u0667"},
    {"C", L'.', L',', L"1,234,567"},
};

} // namespace

TEST(ZePosFmt, HasTheShapeThatItsBoxNames)
{
    EXPECT_EQ(NSGetSizeOfEncoding("{ZePosFmt=^{ZeFormatterPlatform}iIddqq(?=I{?=SS}{?=SS})I}"), sizeof(ZePosFmt));
    ZePosFmt fmt;
    EXPECT_EQ(fmt.eFormat, QVPOSFMT_TIME);
    fmt.dwTimeSignature = 0x00030004;
    EXPECT_EQ(fmt.wBeatsPerMeasure, 3);
    EXPECT_EQ(fmt.cBeatValue, 4);
}

TEST(ZePosFmt, TypesBringTheirFrameRate)
{
    const std::map<int, double> kRates = {{QVPOSFMT_SMPTE_NONDROP_29, kNtsc},
                                          {QVPOSFMT_SMPTE_NONDROP_30, 30},
                                          {QVPOSFMT_SMPTE_DROP, kNtsc},
                                          {QVPOSFMT_SMPTE_EBU, 25},
                                          {QVPOSFMT_SMPTE_FILM, 24},
                                          {QVPOSFMT_TIME_CD, 75},
                                          {QVPOSFMT_SMPTE_NONDROP_23, 23.976023976023978}};
    for (int type = -1; type <= QVPOSFMT_PERCENT + 1; ++type) {
        SCOPED_TRACE(type);
        ZePosFmt fmt;
        fmt.dFrameRate = 12;
        fmt.setType(static_cast<_qvposfmt_format>(type));
        EXPECT_EQ(fmt.eFormat, type);
        EXPECT_EQ(fmt.dFrameRate, kRates.contains(type) ? kRates.at(type) : 12);
        EXPECT_EQ(fmt.isHMSF(), kRates.contains(type) || type == QVPOSFMT_TIME || type == QVPOSFMT_FRAMES);
    }
}

TEST(ZePosFmt, StepsByOneUnitOfItsFormat)
{
    static const struct {
        int type;
        unsigned sampleRate;
        double rate; ///< frames per second, beats a minute
        long long increment;
    } kRows[] = {
        {QVPOSFMT_SAMPLES, 44100, 0, 1},
        {QVPOSFMT_TIME, 44100, 0, 4410},
        {QVPOSFMT_TIME_METRIC, 44101, 0, 4411},
        {QVPOSFMT_SMPTE_NONDROP_29, 44100, kNtsc, 1472},
        {QVPOSFMT_SMPTE_EBU, 44100, 25, 1764},
        {QVPOSFMT_FRAMES, 44100, -25, -1764},
        {QVPOSFMT_MEASURES, 44100, 120, 22050},
        {QVPOSFMT_MEASURES, 0x10000000, 1, 0xC0000000}, // the product wraps at 32 bits
        {QVPOSFMT_PERCENT, 44100, 0, 480},
        {21, 44100, 24, 1},
        {QVPOSFMT_TIME, 0, 0, 0},
        {QVPOSFMT_FRAMES_METRIC, 44100, 0, 1},
        {QVPOSFMT_MEASURES, 44100, 0, 1},
        {QVPOSFMT_FRAMES, 44100, 1e-300, kHighest},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.type);
        Format fmt(row.type);
        fmt.dwSampleRate = row.sampleRate;
        fmt.dFrameRate = fmt.dTempo = row.rate;
        EXPECT_EQ(fmt.getIncrement(), row.increment);
    }
}

TEST(ZePosFmt, WritesWithTheUsersSeparators)
{
    static const struct {
        int type;
        const wchar_t* text; ///< of position 1234567
    } kRows[] = {
        {QVPOSFMT_TIME, L"00:00:25.720"},     {QVPOSFMT_TIME_METRIC, L"25.720146"},
        {QVPOSFMT_FRAMES, L"00:00:25.18"},    {QVPOSFMT_FRAMES_METRIC, L"643.004"},
        {QVPOSFMT_MEASURES, L"13:4.422"},     {QVPOSFMT_SMPTE_DROP, L"00:00:25;21"},
        {QVPOSFMT_SMPTE_EBU, L"00:00:25:18"}, {QVPOSFMT_TIME_CD, L"00:00:25:54"},
        {QVPOSFMT_PERCENT, L"2,572.01 %"},
    };
    for (const LocaleRow& locale : kLocales) {
        const ScopedLocale users(locale.name);
        for (const auto& row : kRows) {
            SCOPED_TRACE(testing::Message() << locale.name << " format " << row.type);
            Format fmt(row.type);
            EXPECT_EQ(fmt.text(1234567), WithSeparators(row.text, locale.decimal, locale.thousands));
        }
        EXPECT_EQ(Format(QVPOSFMT_SAMPLES).text(1234567), locale.count) << locale.name;
    }
}

TEST(ZePosFmt, ReadsWhatItWrites)
{
    for (const LocaleRow& locale : kLocales) {
        const ScopedLocale users(locale.name);
        Format samples(QVPOSFMT_SAMPLES);
        for (const long long position : {0LL, 1LL, -1LL, 999LL, -1000LL, 1234567LL, kHighest, kLowest}) {
            const ZeString text = samples.text(position);
            EXPECT_EQ(samples.numberValue(text, 0), position) << locale.name << " " << Narrow(text);
        }
        for (const int type : {1, 2, 4, 6, 7, 8, 9, 10, 17, 20}) {
            Format fmt(type);
            const ZeString text = fmt.text(1234567);
            const PosFmtReading reading = fmt.readValue(text, 0);
            EXPECT_TRUE(reading.accepted) << locale.name << " " << Narrow(text);
            EXPECT_EQ(reading.stop, text.size());
            EXPECT_NEAR(static_cast<double>(reading.position), 1234567.0, 48000.0 / 24) << Narrow(text);
        }
    }
}

TEST(ZePosFmt, SaysWhyReadingStopped)
{
    using enum PosFmtReason;
    static const struct {
        const char* locale;
        int type;
        ZeString text;
        bool accepted;
        PosFmtReason reason;
        std::size_t stop;
        long long position;
    } kRows[] = {
        {"en_US", QVPOSFMT_SAMPLES, L"1,234", true, None, 5, 1234},
        {"en_US", QVPOSFMT_SAMPLES, L"12x4", false, UnexpectedCharacter, 2, 12},
        {"en_US", QVPOSFMT_SAMPLES, L"1e3", false, UnexpectedCharacter, 1, 1},
        {"en_US", QVPOSFMT_SAMPLES, L"", false, NotANumber, 0, 0},
        {"en_US", QVPOSFMT_SAMPLES, ZeString(L"12\0x", 4), true, UnexpectedCharacter, 2, 12},
        {"en_US", QVPOSFMT_SAMPLES, ZeString(500, L'x'), false, NotANumber, 0, 0},
        {"en_US", QVPOSFMT_SAMPLES, ZeString(2000, L'0'), false, TextTooLong, 79, 0},
        {"de_DE", QVPOSFMT_FRAMES, L"00:00:01.05", true, None, 11, 57600},
        {"de_DE", QVPOSFMT_FRAMES, L"00:00:01,05", false, SeparatorNotRead, 8, 1920},
        {"en_US", QVPOSFMT_RESERVED_11, L"1", false, NoConversion, 0, 0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.type << " " << Narrow(row.text));
        const ScopedLocale users(row.locale);
        Format fmt(row.type);
        const PosFmtReading reading = fmt.readValue(row.text, 0);
        EXPECT_EQ(reading.accepted, row.accepted);
        EXPECT_STREQ(PosFmtReasonText(reading.reason), PosFmtReasonText(row.reason));
        EXPECT_EQ(reading.stop, row.stop);
        EXPECT_EQ(reading.position, row.position);
        EXPECT_EQ(fmt.numberValue(row.text, 0), row.accepted ? row.position : 0);
    }
}

TEST(ZePosFmt, OffsetsPositionsButNoLengths)
{
    static const struct {
        const char* why;
        long long offset, position;
        unsigned flags;
        const wchar_t* text;
    } kRows[] = {
        {"a position", 1000, 1000, 0, L"0"},
        {"a length", 1000, 1000, kPosFmtLength, L"1,000"},
        {"the lowest difference wraps", 1, kLowest, 0, L"9,223,372,036,854,775,807"},
        {"the highest too", kLowest, kHighest, 0, L"-1"},
    };
    const ScopedLocale users("en_US");
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Format fmt(QVPOSFMT_SAMPLES);
        fmt.ntOffset = row.offset;
        EXPECT_EQ(fmt.text(row.position, row.flags), row.text);
        EXPECT_EQ(fmt.numberValue(row.text, row.flags), row.position);
        EXPECT_EQ(fmt.readValue(row.text, row.flags).position, row.position);
        EXPECT_EQ(fmt.numberValue(L"refused", row.flags), row.flags & kPosFmtLength ? 0 : row.offset);
    }
}

TEST(ZePosFmt, HasNoTextForTheOtherFormats)
{
    for (const int type : {11, 12, 13, 14, 15, 16, 18, 19, 21, -1, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(type);
        Format fmt(type);
        EXPECT_EQ(fmt.text(48000), L"!");
        EXPECT_EQ(fmt.numberValue(L"1", 0), 0);
    }
}

TEST(ZePosFmt, ServesOnAfterItsFormatterWent)
{
    Format fmt(QVPOSFMT_SMPTE_EBU);
    EXPECT_EQ(fmt.text(48000), L"00:00:01:00");
    fmt.Cleanup();
    EXPECT_EQ(fmt.pFormatter, nullptr);
    EXPECT_EQ(fmt.text(96000), L"00:00:02:00");

    bool coarse = false;
    unsigned stepCount = 0;
    EXPECT_EQ(fmt.formatTicks(7 * 48000.0, &coarse, &stepCount), 480000.0);
    EXPECT_TRUE(coarse);
    EXPECT_EQ(stepCount, 10u);
}

TEST(ZePosFmt, AsksForNoMemoryOnceItsTextHasRoom)
{
    const ScopedLocale users("fr_FR");
    for (int type = QVPOSFMT_TIME; type <= QVPOSFMT_PERCENT; ++type) {
        SCOPED_TRACE(type);
        Format fmt(type);
        ZeString text;
        text.reserve(80);
        fmt.stringValue(text, 1234567, 0);
        fmt.numberValue(text, 0);
        const std::size_t before = HeapRequests();
        for (const long long position : {kLowest, -1LL, 0LL, 1234567LL, kHighest}) {
            fmt.stringValue(text, position, 0);
            fmt.numberValue(text, 0);
        }
        EXPECT_EQ(HeapRequests(), before);
    }
}

TEST(ZePosFmt, LoadsNoLocaleForTimecode)
{
    Format fmt(QVPOSFMT_SMPTE_DROP);
    fmt.initFormatter();
    ZeString text;
    text.reserve(80);
    const std::size_t before = HeapRequests();
    fmt.stringValue(text, 1234567, 0);
    EXPECT_NE(fmt.numberValue(text, 0), 0);
    EXPECT_EQ(HeapRequests(), before);
    text = L"00:1,00";
    fmt.numberValue(text, 0);
    EXPECT_GT(HeapRequests(), before) << "a character that may group digits needs the user's locale";
}

TEST(ZePosFmt, IsDefinedForAbsurdParameters)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const ScopedLocale users("en_US");
    for (int type = -1; type <= 21; ++type) {
        for (const double rate : {0.0, -1.0, 1e-300, 1e300, nan, HUGE_VAL}) {
            for (const unsigned sampleRate : {0u, 1u, 0xFFFFFFFFu}) {
                Format fmt(type);
                fmt.dwSampleRate = sampleRate;
                fmt.dFrameRate = fmt.dTempo = rate;
                fmt.ccPercentBase = std::isnan(rate) ? 0 : kLowest;
                fmt.wBeatsPerMeasure = rate == 0.0 ? 0 : 0xFFFF;
                fmt.cTicksPerBeat = sampleRate;
                for (const long long position : {kLowest, -1LL, 0LL, kHighest}) {
                    for (unsigned flags = 0; flags < 8; ++flags) {
                        const ZeString text = fmt.text(position, flags);
                        SCOPED_TRACE(testing::Message() << type << " " << rate << " " << Narrow(text));
                        EXPECT_LE(text.size(), 79u);
                        EXPECT_EQ(text.find_first_of(L"nif"), text.npos) << "not-a-number or infinity";
                        fmt.numberValue(text, flags);
                    }
                    _measureval measures{};
                    measures.tempo = rate;
                    PositionToMeasures(position, sampleRate, &measures);
                    MeasuresToPosition(sampleRate, &measures);
                    _smpteval label{};
                    SamplesToSmpte(label, rate, static_cast<double>(position));
                }
                fmt.getIncrement();
                bool coarse = false;
                unsigned stepCount = 0;
                for (const double span : {0.0, -5.0, 1e300, HUGE_VAL, nan, 48000.0})
                    fmt.formatTicks(span, &coarse, &stepCount);
            }
        }
    }
}

TEST(ZeFormatterPlatform, WritesPlainNumbers)
{
    static const struct {
        const char* locale;
        double value;
        const wchar_t *pattern, *text;
    } kRows[] = {
        {"en_US", 1234.5, L"#.###", L"1,234.500"},
        {"en_US", -1234.5, L"#.###", L"-1,234.500"},
        {"en_US", -0.004, L"###.##", L"-0.00"},
        {"en_US", -0.0, L"#", L"0"},
        {"de_DE", 1234567.25, L"###.##", L"1.234.567,25"},
        {"ar_EG", 1234.5, L"#.#", L"1\u066C234\u066B5"},
    };
    for (const auto& row : kRows) {
        const ScopedLocale users(row.locale);
        ZeString text(L"before");
        ZeFormatterPlatform::stringFromDouble(text, row.value, row.pattern);
        EXPECT_EQ(text, row.text);
    }
}
