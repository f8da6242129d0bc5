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
    const auto increment = [](int type, double rate = 0, unsigned sampleRate = 44100) {
        Format fmt(type, sampleRate, rate);
        fmt.dTempo = rate;
        return fmt.getIncrement();
    };
    EXPECT_EQ(increment(QVPOSFMT_SAMPLES), 1);
    EXPECT_EQ(increment(QVPOSFMT_TIME), 4410);
    EXPECT_EQ(increment(QVPOSFMT_TIME_METRIC, 0, 44101), 4411);
    EXPECT_EQ(increment(QVPOSFMT_SMPTE_NONDROP_29, kNtsc), 1472);
    EXPECT_EQ(increment(QVPOSFMT_SMPTE_EBU, 25), 1764);
    EXPECT_EQ(increment(QVPOSFMT_FRAMES, -25), -1764);
    EXPECT_EQ(increment(QVPOSFMT_MEASURES, 120), 22050);
    EXPECT_EQ(increment(QVPOSFMT_MEASURES, 1, 0x10000000), 0xC0000000) << "the product wraps at 32 bits";
    EXPECT_EQ(increment(QVPOSFMT_PERCENT), 480);
    EXPECT_EQ(increment(21, 24), 1);
    EXPECT_EQ(increment(QVPOSFMT_TIME, 0, 0), 0);
    EXPECT_EQ(increment(QVPOSFMT_FRAMES_METRIC), 1);
    EXPECT_EQ(increment(QVPOSFMT_MEASURES), 1);
    EXPECT_EQ(increment(QVPOSFMT_FRAMES, 1e-300), kHighest);
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
    const auto said = [](const char* locale, int type, const ZeString& text) {
        const ScopedLocale users(locale);
        Format fmt(type);
        const PosFmtReading reading = fmt.readValue(text, 0);
        EXPECT_EQ(fmt.numberValue(text, 0), reading.accepted ? reading.position : 0);
        return Said(reading, text);
    };
    constexpr int kSamples = QVPOSFMT_SAMPLES, kFrames = QVPOSFMT_FRAMES;
    EXPECT_EQ(said("en_US", kSamples, L"1,234"), "accepted 1234");
    EXPECT_EQ(said("en_US", kSamples, L"12x4"), "refused 12 at 2: unexpected character");
    EXPECT_EQ(said("en_US", kSamples, L"1e3"), "refused 1 at 1: unexpected character");
    EXPECT_EQ(said("en_US", kSamples, L""), "refused 0 at 0: not a number");
    EXPECT_EQ(said("en_US", kSamples, ZeString(L"12\0x", 4)), "accepted 12 at 2: unexpected character");
    EXPECT_EQ(said("en_US", kSamples, ZeString(500, L'x')), "refused 0 at 0: not a number");
    EXPECT_EQ(said("en_US", kSamples, ZeString(2000, L'0')), "refused 0 at 79: text too long");
    EXPECT_EQ(said("de_DE", kFrames, L"00:00:01.05"), "accepted 57600");
    EXPECT_EQ(said("de_DE", kFrames, L"00:00:01,05"), "refused 1920 at 8: this decimal separator can't be read here");
    EXPECT_EQ(said("en_US", QVPOSFMT_RESERVED_11, L"1"), "refused 0 at 0: this format has no text");
}

TEST(ZePosFmt, OffsetsPositionsButNoLengths)
{
    const ScopedLocale users("en_US");
    const auto check = [](long long offset, long long position, unsigned flags, const wchar_t* text) {
        Format fmt(QVPOSFMT_SAMPLES);
        fmt.ntOffset = offset;
        EXPECT_EQ(fmt.text(position, flags), text);
        EXPECT_EQ(fmt.numberValue(text, flags), position) << text;
        EXPECT_EQ(fmt.readValue(text, flags).position, position) << text;
        EXPECT_EQ(fmt.numberValue(L"refused", flags), flags & kPosFmtLength ? 0 : offset) << text;
    };
    check(1000, 1000, 0, L"0");
    check(1000, 1000, kPosFmtLength, L"1,000");
    check(1, kLowest, 0, L"9,223,372,036,854,775,807"); // the difference wraps
    check(kLowest, kHighest, 0, L"-1");
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
    const auto written = [](const char* locale, double value, const wchar_t* pattern) {
        const ScopedLocale users(locale);
        ZeString text(L"before");
        ZeFormatterPlatform::stringFromDouble(text, value, pattern);
        return text;
    };
    EXPECT_EQ(written("en_US", 1234.5, L"#.###"), L"1,234.500");
    EXPECT_EQ(written("en_US", -0.004, L"###.##"), L"-0.00");
    EXPECT_EQ(written("en_US", -0.0, L"#"), L"0");
    EXPECT_EQ(written("de_DE", -1234567.25, L"###.##"), L"-1.234.567,25");
    EXPECT_EQ(written("ar_EG", 1234.5, L"#.#"), L"1\u066C234\u066B5");
}
