#include "ZePrint.h"

#include <limits>

#include <gtest/gtest.h>

TEST(ZoomRatioUtils, StepsRunByTwosAndThrees)
{
    static const struct {
        int step;
        double ratio;
        const wchar_t* text;
    } kRows[] = {
        {0, 1.0, L"1:1"},
        {1, 2.0, L"1:2"},
        {8, 24.0, L"1:24"},
        {98, 844424930131968.0, L"1:844424930131968"},
        {99, 1125899906842624.0, L"1:1125899906842624"},
        {std::numeric_limits<int>::max(), 1125899906842624.0, L"1:1125899906842624"},
        {-1, 0.5, L"2:1"},
        {-7, 0.0625, L"16:1"},
        {-8, 1.0 / 24.0, L"24:1"},
        {-63, 1.0 / 24.0, L"24:1"},
        {std::numeric_limits<int>::min(), 1.0 / 24.0, L"24:1"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.step);
        EXPECT_EQ(ZoomRatioUtils::ZoomRatioFromHMagnify(row.step), row.ratio);
        ZeString text(L"before");
        ZoomRatioUtils::ZoomRatioTextFromHMagnify(row.step, text);
        EXPECT_EQ(text, row.text);
    }
}

TEST(ZoomRatioUtils, RatiosRoundToWholeCounts)
{
    static const struct {
        const char* why;
        double ratio;
        const wchar_t* text;
        long pixels;
        long long positions;
    } kRows[] = {
        {"a half goes up", 2.5, L"1:3", 1, 3},
        {"inward too", 0.4, L"3:1", 3, 1},
        {"below a half goes down", 1.49, L"1:1", 1, 1},
        {"one pixel for six", 6.0, L"1:6", 1, 6},
        {"four pixels for one", 0.25, L"4:1", 4, 1},
        {"past 32 bits", 1e12, L"1:1000000000000", 1, 1000000000000},
        {"past 64 bits", 1e30, L"1:9223372036854775807", 1, std::numeric_limits<long long>::max()},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        ZeString text;
        ZoomRatioUtils::ZoomRatioTextFromZoomRatio(row.ratio, text);
        EXPECT_EQ(text, row.text);
        long long positions = 0;
        long pixels = 0;
        ZoomRatioUtils::PixelDensityFromZoomRatio(row.ratio, &positions, &pixels);
        EXPECT_EQ(positions, row.positions);
        EXPECT_EQ(pixels, row.pixels);
        ZoomRatioUtils::PixelDensityFromZoomRatio(row.ratio, nullptr, nullptr); // counts that nobody wants
    }
}
