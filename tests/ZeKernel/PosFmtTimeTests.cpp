#include "PosFmtFixture.h"

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
