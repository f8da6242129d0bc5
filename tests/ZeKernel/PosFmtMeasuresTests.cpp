#include "PosFmtFixture.h"

TEST(AsciiToMeasures, ReadsFields)
{
    const auto check = [](const ZeString& text, bool accepted, unsigned measures, double beats) {
        _measureval m{};
        m.measures = 99;
        m.beats = 99;
        EXPECT_EQ(AsciiToMeasures(text, &m, L'.', L','), accepted) << text;
        EXPECT_EQ(m.measures, measures) << text;
        EXPECT_NEAR(m.beats, beats, 1e-10) << text;
    };
    check(L"7x", false, 7, 0);
    check(L"7:", true, 7, 0);
    check(L"1:2.3", true, 1, 2.75);
    check(L"1:2.1x", true, 1, 2.1);
    check(L":5", true, 0, 5);
    check(L"4294967297:1", true, 1, 1);
    check(L"5:" + ZeString(80, L'1'), true, 5, 0);
}

TEST(Measures, ConvertPositions)
{
    _measureval m{};
    m.timeSignature = 4u << 16 | 8;
    m.tempo = 120;
    EXPECT_TRUE(PositionToMeasures(36000, 48000, &m));
    EXPECT_EQ(m.measures, 0u);
    EXPECT_NEAR(m.beats, 1.5002, 1e-12);
    EXPECT_TRUE(PositionToMeasures(-36000, 48000, &m));
    EXPECT_EQ(m.measures, 0u);
    EXPECT_NEAR(m.beats, -1.4998, 1e-12);
    m.measures = 2;
    m.beats = 1.5;
    EXPECT_EQ(MeasuresToPosition(48000, &m), 228000);
    m.measures = 1u << 30; // times four beats is 0 in 32 bits
    EXPECT_EQ(MeasuresToPosition(48000, &m), 36000);
    EXPECT_EQ(m.wBeatsPerMeasure, 4);
    EXPECT_EQ(m.wBeatValue, 8);
}
