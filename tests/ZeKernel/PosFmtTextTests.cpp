#include "PosFmtFixture.h"

// What the formats write and read, each by its own functions.

namespace {

constexpr int kTime = QVPOSFMT_TIME, kFrames = QVPOSFMT_FRAMES, kCd = QVPOSFMT_TIME_CD;
constexpr int kSeconds = QVPOSFMT_TIME_METRIC, kFrameCount = QVPOSFMT_FRAMES_METRIC, kPercent = QVPOSFMT_PERCENT;
constexpr int kMeasures = QVPOSFMT_MEASURES, kDrop = QVPOSFMT_SMPTE_DROP, kEbu = QVPOSFMT_SMPTE_EBU;

struct WriteRow {
    const char* why;
    int format;
    long long position; ///< at 48000 samples, 25 frames and two beats a second
    unsigned flags;
    const wchar_t* text;
};

} // namespace

TEST(PosFmt, WritesPositions)
{
    static const WriteRow kRows[] = {
        {"half a frame goes up", kEbu, 960, 0, L"00:00:00:01"},
        {"less does not", kEbu, 959, 0, L"00:00:00:00"},
        {"a day wraps", kEbu, 48000LL * 86400, 0, L"00:00:00:00"},
        {"drop-frame has its separator", kDrop, 48000LL * 60, 0, L"00:00:59;28"},
        {"none before 0", kDrop, -48000, 0, L"00:00:00;00"},
        {"time", kTime, 4344000, 0, L"00:01:30.500"},
        {"whole units", kTime, 4344000, kPosFmtWholeUnits, L"00:01:30"},
        {"other flags change nothing", kTime, 4344000, kPosFmtShort | kPosFmtLength, L"00:01:30.500"},
        {"negative", kTime, -48000, 0, L"-00:00:01.000"},
        {"milliseconds are cut", kTime, 47999, 0, L"00:00:00.999"},
        {"hours don't wrap", kTime, 48000LL * 3600 * 125, 0, L"125:00:00.000"},
        {"compact disc", kCd, 2929920, 0, L"00:01:01:03"},
        {"whole seconds of it", kCd, 2929920, kPosFmtWholeUnits, L"00:01:01"},
        {"frames", kFrames, 50000, 0, L"00:00:01.01"},
        {"frames ignore whole units", kFrames, 50000, kPosFmtWholeUnits, L"00:00:01.01"},
        {"seconds", kSeconds, 72000, 0, L"1.500000"},
        {"no sign", kSeconds, -72000, 0, L"1.500000"},
        {"whole seconds are rounded", kSeconds, 72000, kPosFmtWholeUnits, L"2"},
        {"short wins over whole", kSeconds, 72000, kPosFmtWholeUnits | kPosFmtShort, L"1.500"},
        {"groups of digits", kSeconds, 48000LL * 1234567, kPosFmtLength, L"1,234,567.000000"},
        {"a count of frames", kFrameCount, 72000, 0, L"37.500"},
        {"whole frames", kFrameCount, 72000, kPosFmtWholeUnits | kPosFmtShort, L"38"},
        {"percent", kPercent, -48000 * 20, 0, L"2,000.00 %"},
        {"whole percent", kPercent, 24000, kPosFmtWholeUnits, L"50 %"},
        {"the first beat", kMeasures, 0, 0, L"1:1.0"},
        {"a sample before the second measure", kMeasures, 95999, 0, L"2:1.0"}, // within the bias
        {"ticks, without a sign", kMeasures, -36000, 0, L"1:2.480"},
        {"a length counts from 0", kMeasures, 36000, kPosFmtLength, L"0:1.480"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Write(Format(row.format), row.position, kPoint, kComma, row.flags), row.text) << row.why;
}

TEST(PosFmt, WritesAtAnyRate)
{
    const auto written = [](int format, unsigned sampleRate, double frameRate, long long position) {
        return Write(Format(format, sampleRate, frameRate), position, kPoint, kComma, 0);
    };
    EXPECT_EQ(written(kDrop, 44100, 0, 1800000), L"00:00:40;23") << "drop-frame";
    EXPECT_EQ(written(QVPOSFMT_SMPTE_NONDROP_29, 44100, 0, 1800000), L"00:00:40:23") << "29.97 frames";
    EXPECT_EQ(written(QVPOSFMT_SMPTE_NONDROP_30, 44100, 0, 1800000), L"00:00:40:24") << "30 frames";
    EXPECT_EQ(written(QVPOSFMT_SMPTE_FILM, 44100, 0, 44100LL * 86399), L"23:59:59:00") << "24 frames";
    EXPECT_EQ(written(kDrop, 0, 0, 48000), L"22:22:15;29") << "no sample rate: the largest count of frames";
    EXPECT_EQ(written(kEbu, 0, 0, 0), L"00:00:00:00") << "no sample rate, no position";
    EXPECT_EQ(written(kEbu, 0, 0, -1), L"00:00:00:00") << "no sample rate, before 0";
    EXPECT_EQ(written(kFrames, 4294967295, 25, 4294967294), L"00:00:00.25") << "one within the tolerance counts";
    EXPECT_EQ(written(kTime, 1, 0, 4294967), L"1193:02:47.000") << "the most that integers of 32 bits hold";
    EXPECT_EQ(written(kTime, 1, 0, 4294968), L"1193:02:48.000") << "and more";
    EXPECT_EQ(written(kFrames, 48000, 29.5, 48000 * 3723LL + 24000), L"01:02:03.14") << "a rate with a fraction";
    EXPECT_EQ(written(kFrames, 48000, 120, 47999), L"00:00:00.119") << "three digits of frames";
    EXPECT_EQ(written(kFrames, 48000, 0, 50000), L"00:00:00.00") << "no frame rate";
    EXPECT_EQ(written(kTime, 0, 0, 0), L"00:00:00.000") << "no sample rate for a time";
    Format quarters(kMeasures);
    quarters.cTicksPerBeat = 4;
    EXPECT_EQ(Write(quarters, 36000, kPoint, kComma, 0), L"1:2.2");
}

TEST(PosFmt, WritesTheFirstCharacterOfASeparator)
{
    static const struct {
        int format;
        const wchar_t *separator, *text; ///< of half a second
    } kRows[] = {
        {kTime, L"\u066b", L"00:00:00\u066b500"},
        {kTime, L",!", L"00:00:00,500"},
        {kTime, L"", L"00:00:00"},
        {kFrames, L"", L"00:00:00"},
        {kCd, L"", L"00:00:00:37"},
        {kSeconds, L"", L"0"},
        {kMeasures, L"\u066b", L"1:2\u066b0"},
        {kMeasures, L"", L"1:2"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Write(Format(row.format), 24000, row.separator, kNothing, 0), row.text) << row.format;
}

TEST(PosFmt, ReadsWithAReason)
{
    static const struct {
        int format;
        const wchar_t* text;
        const char* said;
    } kRows[] = {
        {kEbu, L"01:00:00:01", "accepted 172801920"},
        {kDrop, L"00:01:00;00", "accepted 2882883"}, // 1800 frames at 29.97
        {kEbu, L"1:", "accepted 48000"},
        {kEbu, L"1: 0x", "refused 48000 at 4: unexpected character"},
        {kEbu, L"-1:0", "refused 0 at 0: unexpected character"},
        {kEbu, L"0:0:1:0:7", "refused 48000 at 7: too many fields"},
        {kTime, L"00:01:30.500", "accepted 4344000"},
        {kTime, L"1:30.5", "accepted 4344000"},
        {kTime, L"90.25", "accepted 4332000"},
        {kTime, L"1  :30", "refused 48000 at 2: unexpected character"}, // one blank ends a number, two are too many
        {kTime, L" 1 : 30 %", "accepted 4320000"},
        {kTime, L" -.5", "accepted -24000"},
        {kTime, L"1.0019", "accepted 48048"},
        {kTime, L"1,000", "accepted 48000000"},
        {kTime, L"", "accepted 0"},
        {kTime, L"1:2:3:4", "refused 0 at 5: too many fields"},
        {kTime, L"1.5:30", "refused 0 at 3: colon after the decimal separator"},
        {kTime, L"1.5.3", "refused 0 at 3: second decimal separator"},
        {kTime, L"01:02:03.04x", "refused 178705920 at 11: unexpected character"},
        {kTime, L"--5", "refused 0 at 1: unexpected character"},
        {kTime, L"1:-5", "refused 2880000 at 2: unexpected character"},
        {kCd, L"0:1:1:75", "accepted 2976000"},
        {kCd, L"-1:00", "accepted -48000"},
        {kCd, L"99:0:0:0", "accepted 518400000"},
        {kFrames, L"00:00:01.30", "accepted 105600"}, // frames don't carry
        {kFrames, L"1:2:3:4:5", "refused 178711680 at 7: too many fields"},
        {kSeconds, L"-1.5", "accepted -72000"},
        {kSeconds, L"1,234.5", "accepted 59256000"},
        {kSeconds, L"0.00003", "accepted 1"}, // 1.44 samples are truncated
        {kSeconds, L"", "accepted 0"},
        {kPercent, L" 50 % ", "accepted 24000"},
        {kFrameCount, L"30", "accepted 57600"},
        {kSeconds, L"1.5x", "refused 72000 at 3: unexpected character"},
        {kSeconds, L"x", "refused 0 at 0: unexpected character"},
        {kSeconds, L"3 4", "refused 144000 at 2: unexpected character"},
        {kSeconds, L"- 3", "refused 0 at 2: unexpected character"},
        {kSeconds, L"1.2.3", "refused 48000 at 3: second decimal separator"},
        {kMeasures, L"1:2.480", "accepted 52800"},
        {kMeasures, L"1:2.2", "accepted 36000"},
        {kMeasures, L"2:0.5", "accepted 102000"},
        {kMeasures, L"2:0.2", "accepted 84000"},
        {kMeasures, L"3", "accepted 168000"},
        {kMeasures, L"1:0", "accepted 0"},
        {kMeasures, L" 2 : 1 ", "accepted 96000"},
        {kMeasures, L"1,000:1", "accepted 95904000"},
        {kMeasures, L"  :3", "refused 0 at 2: measures count from 1"},
        {kMeasures, L"", "refused 0 at 0: measures count from 1"},
        {kMeasures, L"1:2x", "accepted 24000 at 3: unexpected character"},
        {kMeasures, L"1:2:3", "accepted 24000 at 3: unexpected character"},
        {kMeasures, L"1:2.1.2", "accepted 24000 at 5: second decimal separator"},
        {kMeasures, L"7x", "refused 552000 at 1: unexpected character"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Said(Read(Format(row.format), row.text, kPoint, kComma, 0), row.text), row.said) << row.text;
    for (const auto& [text, position] : {std::pair(L"1:2", 144000), {L"", 0}, {L"0:2", 48000}})
        EXPECT_EQ(Read(Format(kMeasures), text, kPoint, kComma, kPosFmtLength).position, position) << "a length";
}

TEST(PosFmt, ReadsUpTo79Characters)
{
    const ZeString longest = ZeString(78, L'0') + L"1", tooLong = L"0" + longest, beats = L"5:" + ZeString(80, L'1');
    for (const int format : {kEbu, kTime, kCd, kFrames, kSeconds, kFrameCount, kPercent}) {
        EXPECT_TRUE(Read(Format(format), longest, kPoint, kComma, 0).accepted) << format;
        EXPECT_EQ(Said(Read(Format(format), tooLong, kPoint, kComma, 0), tooLong), "refused 0 at 79: text too long");
    }
    EXPECT_EQ(Said(Read(Format(kMeasures), beats, kPoint, kComma, 0), beats), "refused 360000 at 81: text too long");
}

TEST(PosFmt, NamesASeparatorThatFramesCannotBeReadWith)
{
    const Format frames(kFrames);
    for (const wchar_t* separator : {L",", L"\u066b", L"'"}) {
        const ZeString text = Write(frames, 48000, separator, kNothing, 0);
        const PosFmtReading reading = Read(frames, text, separator, kNothing, 0);
        EXPECT_EQ(Said(reading, text), "refused 1920 at 8: this decimal separator can't be read here");
    }
}

TEST(PosFmt, LeavesOtherFormatsAlone)
{
    for (int format = -1; format <= QVPOSFMT_PERCENT + 1; ++format) {
        SCOPED_TRACE(format);
        const Format fmt(format);
        const PosFmtKernel kernel = KernelOf(fmt);
        ZeString out = L"untouched";
        if (kernel != PosFmtKernel::Smpte) {
            SMPTE_ToString(out, 0, fmt, 0);
            EXPECT_EQ(Said(SMPTE_Read(L"1", fmt, kComma, 0), L"1"), "refused 0 at 0: this format has no text");
        }
        if (kernel != PosFmtKernel::SmpteLike) {
            SMPTELike_ToString(out, fmt, 0, kPoint, 0);
            EXPECT_FALSE(SMPTELike_Read(L"1", fmt, kPoint, kComma, 0).accepted);
        }
        if (kernel != PosFmtKernel::Metric) {
            Metric_ToString(out, fmt, 0, kPoint, kComma, 0);
            EXPECT_FALSE(Metric_Read(L"1", fmt, kPoint, kComma, 0).accepted);
        }
        EXPECT_EQ(out, L"untouched");
    }
}
