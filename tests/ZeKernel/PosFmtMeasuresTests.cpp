#include "PosFmtFixture.h"

TEST(MusicTime, WritesPositions)
{
    static const struct {
        const char* why;
        unsigned ticks;
        long long position;
        const wchar_t* separator;
        unsigned flags;
        const wchar_t* text;
    } kRows[] = {
        {"the first beat", 960, 0, L".", 0, L"1:1.0"},
        {"the second measure", 960, 96000, L".", 0, L"2:1.0"},
        {"ticks", 960, 36000, L".", 0, L"1:2.480"},
        {"no sign", 960, -36000, L".", 0, L"1:2.480"},
        {"a length counts from 0", 960, 36000, L".", kPosFmtLength, L"0:1.480"},
        {"quarter beats", 4, 36000, L".", 0, L"1:2.2"},
        {"a sample before the measure", 960, 95999, L".", 0, L"2:1.0"}, // within the bias
        {"a foreign separator", 960, 36000, L"\u066b", 0, L"1:2\u066b480"},
        {"none", 960, 36000, L"", 0, L"1:2"},
    };
    for (const auto& row : kRows) {
        Format fmt(QVPOSFMT_MEASURES);
        fmt.cTicksPerBeat = row.ticks;
        ZeString out;
        MusicTime_ToString(out, fmt, row.position, row.separator, row.flags);
        EXPECT_EQ(out, row.text) << row.why;
    }
}

TEST(MusicTime, ReadsWithAReason)
{
    static const struct {
        const wchar_t* text;
        unsigned flags;
        const char* said;
    } kRows[] = {
        {L"1:2.480", 0, "accepted 52800"},
        {L"1:2.2", 0, "accepted 36000"},
        {L"2:0.5", 0, "accepted 102000"},
        {L"2:0.2", 0, "accepted 84000"},
        {L"3", 0, "accepted 168000"},
        {L"1:0", 0, "accepted 0"},
        {L" 2 : 1 ", 0, "accepted 96000"},
        {L"1,000:1", 0, "accepted 95904000"},
        {L"1:2", kPosFmtLength, "accepted 144000"},
        {L"", kPosFmtLength, "accepted 0"},
        {L"0:2", kPosFmtLength, "accepted 48000"},
        {L"0:3", 0, "refused 0 at 0: measures count from 1"},
        {L"  :3", 0, "refused 0 at 2: measures count from 1"},
        {L"", 0, "refused 0 at 0: measures count from 1"},
        {L"1:2x", 0, "accepted 24000 at 3: unexpected character"},
        {L"1:2:3", 0, "accepted 24000 at 3: unexpected character"},
        {L"1:2.1.2", 0, "accepted 24000 at 5: second decimal separator"},
        {L"7x", 0, "refused 552000 at 1: unexpected character"},
    };
    const Format fmt(QVPOSFMT_MEASURES);
    for (const auto& row : kRows) {
        const PosFmtReading reading = MusicTime_Read(row.text, fmt, kPoint, kComma, row.flags);
        EXPECT_EQ(Said(reading, row.text), row.said) << ZeString(row.text);
        EXPECT_EQ(MusicTime_ToNumber(row.text, fmt, kPoint, kComma, row.flags),
                  reading.accepted ? reading.position : 0);
    }
    const ZeString tooLong = L"5:" + ZeString(80, L'1');
    EXPECT_EQ(Said(MusicTime_Read(tooLong, fmt, kPoint, kComma, 0), tooLong), "refused 360000 at 81: text too long");
}

TEST(AsciiToMeasures, ReadsFields)
{
    static const struct {
        ZeString text;
        bool accepted;
        unsigned measures;
        double beats;
    } kRows[] = {
        {L"7x", false, 7, 0},
        {L"7", true, 7, 0},
        {L"7:", true, 7, 0},
        {L"1,200:1", true, 1200, 1},
        {L"1:2.1", true, 1, 2.25},
        {L"1:2.3", true, 1, 2.75},
        {L"1:2.1x", true, 1, 2.1},
        {L":5", true, 0, 5},
        {L"4294967297:1", true, 1, 1},
        {L"5:" + ZeString(79, L'0'), true, 5, 0},
        {L"5:" + ZeString(80, L'1'), true, 5, 0},
    };
    for (const auto& row : kRows) {
        _measureval m{};
        m.measures = 99;
        m.beats = 99;
        EXPECT_EQ(AsciiToMeasures(row.text, &m, L'.', L','), row.accepted) << row.text;
        EXPECT_EQ(m.measures, row.measures) << row.text;
        EXPECT_NEAR(m.beats, row.beats, 1e-10) << row.text;
    }
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
