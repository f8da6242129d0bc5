#include "PosFmtFixture.h"

namespace {

constexpr int kTime = QVPOSFMT_TIME, kFrames = QVPOSFMT_FRAMES, kCd = QVPOSFMT_TIME_CD;

} // namespace

TEST(SMPTELike, WritesPositions)
{
    static const struct {
        const char* why;
        int format;
        unsigned sampleRate;
        double frameRate;
        long long position;
        const wchar_t* separator;
        unsigned flags;
        const wchar_t* text;
    } kRows[] = {
        {"time", kTime, 48000, 0, 4344000, L".", 0, L"00:01:30.500"},
        {"whole units", kTime, 48000, 0, 4344000, L".", kPosFmtWholeUnits, L"00:01:30"},
        {"other flags change nothing", kTime, 48000, 0, 4344000, L".", kPosFmtShort | kPosFmtLength, L"00:01:30.500"},
        {"negative", kTime, 48000, 0, -48000, L".", 0, L"-00:00:01.000"},
        {"milliseconds are cut", kTime, 48000, 0, 47999, L".", 0, L"00:00:00.999"},
        {"one within the tolerance counts", kFrames, 4294967295, 25, 4294967294, L".", 0, L"00:00:00.25"},
        {"hours don't wrap", kTime, 48000, 0, 48000LL * 3600 * 125, L".", 0, L"125:00:00.000"},
        {"more than integers of 32 bits", kTime, 1, 0, 4294967, L".", 0, L"1193:02:47.000"},
        {"and more", kTime, 1, 0, 4294968, L".", 0, L"1193:02:48.000"},
        {"foreign separator", kTime, 48000, 0, 24000, L"\u066b", 0, L"00:00:00\u066b500"},
        {"first character of a separator", kTime, 48000, 0, 24000, L",!", 0, L"00:00:00,500"},
        {"no separator", kTime, 48000, 0, 24000, L"", 0, L"00:00:00"},
        {"compact disc", kCd, 44100, 0, 2691864, L".", 0, L"00:01:01:03"},
        {"whole seconds of it", kCd, 44100, 0, 2691864, L".", kPosFmtWholeUnits, L"00:01:01"},
        {"its separator is its own", kCd, 44100, 0, 588, L"", 0, L"00:00:00:01"},
        {"frames", kFrames, 48000, 25, 50000, L".", 0, L"00:00:01.01"},
        {"frames ignore whole units", kFrames, 48000, 25, 50000, L".", kPosFmtWholeUnits, L"00:00:01.01"},
        {"frames without a separator", kFrames, 48000, 25, 50000, L"", 0, L"00:00:01"},
        {"a rate with a fraction", kFrames, 48000, 29.5, 48000 * 3723LL + 24000, L".", 0, L"01:02:03.14"},
        {"three digits of frames", kFrames, 48000, 120, 47999, L".", 0, L"00:00:00.119"},
        {"no rate", kFrames, 48000, 0, 50000, L".", 0, L"00:00:00.00"},
        {"no sample rate", kTime, 0, 0, 0, L".", 0, L"00:00:00.000"},
        {"another format", QVPOSFMT_MEASURES, 48000, 25, 0, L".", 0, L"untouched"},
    };
    for (const auto& row : kRows) {
        ZeString out = L"untouched";
        SMPTELike_ToString(out, Format(row.format, row.sampleRate, row.frameRate), row.position, row.separator,
                           row.flags);
        EXPECT_EQ(out, row.text) << row.why;
    }
}

TEST(SMPTELike, ReadsWithAReason)
{
    static const struct {
        int format;
        const wchar_t* text;
        const char* said;
    } kRows[] = {
        {kTime, L"1:30.5", "accepted 4344000"},
        {kTime, L"90.25", "accepted 4332000"},
        {kTime, L"00:01:30.500", "accepted 4344000"},
        {kTime, L"1  :30", "refused 48000 at 2: unexpected character"}, // one blank ends a number, two are too many
        {kTime, L" 1 : 30 %", "accepted 4320000"},
        {kTime, L"-00:00:01.000", "accepted -48000"},
        {kTime, L" -.5", "accepted -24000"},
        {kTime, L"1.0019", "accepted 48048"},
        {kTime, L"", "accepted 0"},
        {kTime, L"1:2:3:4", "refused 0 at 5: too many fields"},
        {kTime, L"1.5:30", "refused 0 at 3: colon after the decimal separator"},
        {kTime, L"1.5.3", "refused 0 at 3: second decimal separator"},
        {kTime, L"12x", "refused 576000 at 2: unexpected character"},
        {kTime, L"01:02:03.04x", "refused 178705920 at 11: unexpected character"},
        {kTime, L"--5", "refused 0 at 1: unexpected character"},
        {kTime, L"1:-5", "refused 2880000 at 2: unexpected character"},
        {kTime, L"1,000", "accepted 48000000"},
        {kCd, L"0:1:1:75", "accepted 2976000"},
        {kCd, L"-1:00", "accepted -48000"},
        {kCd, L"99:0:0:0", "accepted 518400000"},
        {kFrames, L"00:00:01.30", "accepted 105600"}, // frames don't carry
        {kFrames, L"1:2:3:4:5", "refused 178711680 at 7: too many fields"},
        {QVPOSFMT_PERCENT, L"1", "refused 0 at 0: this format has no text"},
    };
    for (const auto& row : kRows) {
        const Format fmt(row.format);
        const PosFmtReading reading = SMPTELike_Read(row.text, fmt, kPoint, kComma, 0);
        EXPECT_EQ(Said(reading, row.text), row.said) << ZeString(row.text);
        EXPECT_EQ(SMPTELike_ToNumber(row.text, fmt, kPoint, kComma, 0), reading.accepted ? reading.position : 0);
    }
    for (const int format : {kTime, kCd, kFrames}) {
        const ZeString tooLong(80, L'1');
        EXPECT_EQ(Said(SMPTELike_Read(tooLong, Format(format), kPoint, kComma, 0), tooLong),
                  "refused 0 at 79: text too long");
    }
}

TEST(SMPTELike, NamesASeparatorThatFramesCannotBeReadWith)
{
    const Format frames(kFrames);
    for (const wchar_t* separator : {L",", L"\u066b", L"'"}) {
        ZeString text;
        SMPTELike_ToString(text, frames, 48000, separator, 0);
        const PosFmtReading reading = SMPTELike_Read(text, frames, separator, kNothing, 0);
        EXPECT_EQ(Said(reading, text), "refused 1920 at 8: this decimal separator can't be read here");
    }
}

TEST(AsciiToTime, ReadsFieldsWithoutCarrying)
{
    static const struct {
        const wchar_t* text;
        bool whole;
        const char* fields;
    } kRows[] = {
        {L"5", true, "0:0:5:0"},
        {L"90", true, "0:0:90:0"},
        {L"1:75", true, "0:1:75:0"},
        {L"2:05.5", true, "0:2:5:500"},
        {L"99:99:99.9999", true, "99:99:99:999"},
        {L"01:02:03.004", true, "1:2:3:4"},
        {L"1:2:3.", true, "1:2:3:0"},
        {L"1:2x:3", false, "0:1:2:0"},
        {L"1:2:3:", false, "0:0:0:0"},
        {L"01:02:03:004", false, "0:0:0:0"},
    };
    for (const auto& row : kRows) {
        _smpteval t{42, 9, 9, 9, 9};
        EXPECT_EQ(AsciiToTime(row.text, &t, kPoint, kComma), row.whole) << ZeString(row.text);
        EXPECT_EQ(LabelOf(t), row.fields) << ZeString(row.text);
    }
}

TEST(SmpteLikeToPosition, GivesTheFirstWholeSample)
{
    const _smpteval t{0, 0, 1, 30, 500}, one{0, 0, 0, 0, 1};
    EXPECT_EQ(SmpteLikeToPosition(48000, 1000, &t), 4344000);
    EXPECT_EQ(SmpteLikeToPosition(44100, 1000, &one), 45); // 44.1
    EXPECT_EQ(SmpteLikeToPosition(44100, 0, &one), 9223372036854775807);
    const _smpteval large{0, 4294967295, 4294967295, 4294967295, 0}; // more seconds than 32 bits hold
    EXPECT_EQ(SmpteLikeToPosition(1, 75, &large), 4294967295LL * 3661);
}
