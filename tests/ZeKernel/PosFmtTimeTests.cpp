#include "PosFmtFixture.h"

TEST(AsciiToTime, ReadsFieldsWithoutCarrying)
{
    const auto fields = [](const wchar_t* text) {
        _smpteval t{42, 9, 9, 9, 9};
        const bool whole = AsciiToTime(text, &t, kPoint, kComma);
        return (whole ? "" : "refused ") + LabelOf(t);
    };
    EXPECT_EQ(fields(L"90"), "0:0:90:0");
    EXPECT_EQ(fields(L"1:75"), "0:1:75:0");
    EXPECT_EQ(fields(L"2:05.5"), "0:2:5:500");
    EXPECT_EQ(fields(L"99:99:99.9999"), "99:99:99:999");
    EXPECT_EQ(fields(L"01:02:03.004"), "1:2:3:4");
    EXPECT_EQ(fields(L"1:2:3."), "1:2:3:0");
    EXPECT_EQ(fields(L"1:2x:3"), "refused 0:1:2:0");
    EXPECT_EQ(fields(L"1:2:3:"), "refused 0:0:0:0");
    EXPECT_EQ(fields(L"01:02:03:004"), "refused 0:0:0:0");
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
