#include "ZePrint.h"

#include <limits>

#include <gtest/gtest.h>

TEST(ZoomRatioUtils, StepsRunByTwosAndThrees)
{
    const auto check = [](int step, double ratio, const wchar_t* text) {
        EXPECT_EQ(ZoomRatioUtils::ZoomRatioFromHMagnify(step), ratio) << step;
        ZeString out(L"before");
        ZoomRatioUtils::ZoomRatioTextFromHMagnify(step, out);
        EXPECT_EQ(out, text) << step;
    };
    check(0, 1.0, L"1:1");
    check(1, 2.0, L"1:2");
    check(8, 24.0, L"1:24");
    check(98, 844424930131968.0, L"1:844424930131968");
    check(99, 1125899906842624.0, L"1:1125899906842624");
    check(std::numeric_limits<int>::max(), 1125899906842624.0, L"1:1125899906842624");
    check(-1, 0.5, L"2:1");
    check(-7, 0.0625, L"16:1");
    check(-8, 1.0 / 24.0, L"24:1");
    check(-63, 1.0 / 24.0, L"24:1");
    check(std::numeric_limits<int>::min(), 1.0 / 24.0, L"24:1");
}

TEST(ZoomRatioUtils, RatiosRoundToWholeCounts)
{
    const auto check = [](double ratio, long pixels, long long positions) {
        ZeString text;
        ZoomRatioUtils::ZoomRatioTextFromZoomRatio(ratio, text);
        EXPECT_EQ(text, std::to_wstring(pixels) + L":" + std::to_wstring(positions));
        long long positionCount = 0;
        long pixelCount = 0;
        ZoomRatioUtils::PixelDensityFromZoomRatio(ratio, &positionCount, &pixelCount);
        EXPECT_EQ(positionCount, positions) << ratio;
        EXPECT_EQ(pixelCount, pixels) << ratio;
        ZoomRatioUtils::PixelDensityFromZoomRatio(ratio, nullptr, nullptr); // counts that nobody wants
    };
    check(2.5, 1, 3); // a half goes up
    check(0.4, 3, 1); // inward too
    check(1.49, 1, 1);
    check(6.0, 1, 6);
    check(0.25, 4, 1);
    check(1e12, 1, 1000000000000);
    check(1e30, 1, std::numeric_limits<long long>::max());
}
