#include "PosFmtFixture.h"

#include <cmath>

namespace {

std::string Tick(double span, const ZePosFmt& fmt)
{
    bool coarse = true;
    unsigned stepCount = 99;
    const double step = NiceTick(span, fmt, &coarse, &stepCount);
    return (coarse ? "coarse " : "fine ") + std::to_string(std::llround(step)) + " in " + std::to_string(stepCount);
}

struct Row {
    double span;
    const char* tick;
};

void ExpectTicks(int format, std::initializer_list<Row> rows)
{
    for (const Row& row : rows) EXPECT_EQ(Tick(row.span, Format(format)), row.tick) << format << " " << row.span;
}

constexpr double kSecond = 48000, kMinute = 60 * kSecond, kHour = 60 * kMinute;

} // namespace

TEST(RateFromPosFmt, KnowsEveryFormat)
{
    static const double kRates[] = {1,  100, 1, 29.5, 29.5, 7680, 30000.0 / 1001, 30, 30000.0 / 1001, 25,
                                    24, 1,   1, 7680, 7680, 29.5, 29.5,           75, 24000.0 / 1001, 1,
                                    1};
    for (int format = 0; format <= QVPOSFMT_PERCENT; ++format)
        EXPECT_EQ(RateFromPosFmt(Format(format, 48000, 29.5)), kRates[format]) << format;
    EXPECT_EQ(RateFromPosFmt(Format(-1)), 1);
    EXPECT_EQ(RateFromPosFmt(Format(21)), 1);
    Format wide(QVPOSFMT_MEASURES);
    wide.cTicksPerBeat = 1u << 30; // times four is 0 in 32 bits
    EXPECT_EQ(RateFromPosFmt(wide), 0);
}

TEST(NiceTick, StepsThroughHoursMinutesSecondsAndFrames)
{
    ExpectTicks(QVPOSFMT_SMPTE_NONDROP_30, {{75 * kSecond, "coarse 2880000 in 1"},
                                            {7 * kSecond, "coarse 480000 in 10"},
                                            {24000, "fine 24000 in 15"},
                                            {38400, "fine 48000 in 1"}});
    ExpectTicks(QVPOSFMT_TIME_CD, {{0.5 * kSecond, "fine 23680 in 37"}});
    ExpectTicks(QVPOSFMT_SMPTE_EBU, {{0.5 * kSecond, "fine 23040 in 12"}, {0.125 * kSecond, "fine 9600 in 5"}});
    ExpectTicks(QVPOSFMT_SMPTE_FILM, {{0.125 * kSecond, "fine 8000 in 4"}});
    ExpectTicks(QVPOSFMT_SMPTE_DROP, {{0.25 * kSecond, "fine 16000 in 10"}, {0, "fine 1600 in 1"}});
    ExpectTicks(QVPOSFMT_SMPTE_NONDROP_23, {{0.25 * kSecond, "fine 8000 in 4"}});

    // Fine units at a high rate come in fifths.
    EXPECT_EQ(Tick(48000 * 0.3, Format(QVPOSFMT_FRAMES, 48000, 1000)), "fine 24000 in 20");
    EXPECT_EQ(Tick(48000 * 0.3, Format(QVPOSFMT_FRAMES, 48000, 250)), "fine 24000 in 5");
}

TEST(NiceTick, StepsThroughHoursMinutesSecondsAndMilliseconds)
{
    ExpectTicks(QVPOSFMT_TIME, {
                                   {25 * kHour, "coarse 172800000 in 1"}, // hours modulo 24
                                   {13 * kHour + 21 * kMinute, "coarse 4147200000 in 24"},
                                   {13 * kHour, "coarse 2073600000 in 12"},
                                   {5 * kHour, "coarse 1036800000 in 6"},
                                   {2 * kHour + 30 * kMinute, "coarse 691200000 in 4"},
                                   {2 * kHour, "coarse 345600000 in 2"},
                                   {41 * kMinute, "coarse 172800000 in 1"},
                                   {40 * kMinute, "coarse 86400000 in 30"},
                                   {25 * kMinute, "coarse 43200000 in 15"},
                                   {10 * kMinute, "coarse 28800000 in 10"},
                                   {2 * kMinute + 21 * kSecond, "coarse 14400000 in 5"},
                                   {2 * kMinute, "coarse 5760000 in 2"},
                                   {41 * kSecond, "coarse 2880000 in 1"},
                                   {26 * kSecond, "coarse 1440000 in 30"},
                                   {1.25 * kSecond, "coarse 96000 in 2"},
                                   {1.24 * kSecond, "fine 48000 in 1"},
                                   {0.61 * kSecond, "fine 48000 in 1"},
                                   {0.3 * kSecond, "fine 24000 in 10"},
                                   {0.13 * kSecond, "fine 9600 in 20"},
                                   {0.07 * kSecond, "fine 4800 in 10"},
                                   {0.03 * kSecond, "fine 2400 in 5"},
                                   {0.02 * kSecond, "fine 960 in 2"},
                               });
}

TEST(NiceTick, StepsThroughDecades)
{
    ExpectTicks(QVPOSFMT_SAMPLES, {{3000, "fine 5000 in 5"},
                                   {1500, "fine 2000 in 20"},
                                   {9000, "fine 10000 in 10"},
                                   {1050, "fine 1000 in 10"},
                                   {0, "fine 1 in 10"},
                                   {-5, "fine 1 in 10"}});
    ExpectTicks(QVPOSFMT_TIME_METRIC, {{4800, "fine 48000 in 10"}, {30 * kSecond, "coarse 2400000 in 5"}});
    ExpectTicks(QVPOSFMT_RESERVED_12, {{15 * kSecond, "coarse 960000 in 20"}});
    ExpectTicks(QVPOSFMT_FRAMES_METRIC, {{1, "fine 1920 in 10"}, {1920 * 30, "coarse 96000 in 5"}});
    for (const int format : {int{QVPOSFMT_RESERVED_19}, int{QVPOSFMT_PERCENT}, -1, 21})
        ExpectTicks(format, {{1234, "fine 1234 in 0"}});
}

TEST(NiceTick, StepsThroughMeasuresBeatsAndTicks)
{
    for (const int format : {QVPOSFMT_MEASURES, QVPOSFMT_RESERVED_13})
        ExpectTicks(format, {
                                {48000, "coarse 48000 in 2"},
                                {480000, "coarse 768000 in 4"},
                                {6000, "fine 6000 in 240"},
                                {15000, "coarse 24000 in 4"},
                                {96000, "coarse 192000 in 4"},
                                {96000 + 48000, "coarse 384000 in 4"},
                                {24000, "coarse 24000 in 1"},
                                {24050, "coarse 48000 in 2"},
                                {12000, "fine 12000 in 480"},
                                {425, "fine 450 in 18"},
                                {400, "fine 400 in 16"},
                                {0, "fine 25 in 1"},
                            });
}
