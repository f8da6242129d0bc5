#include "CoreText/CTLine.h"
#include "Drawing.h"

#include <cmath>

namespace {

using GC = ZeGraphicsContext;

struct Trimming {
    const char* why;
    int trim;
    CGFloat letters; // the rectangle's width
    const char16_t* text;
};

/// Text of Monaco at 12, each letter 7.22 wide.
RetainPtr<CTLine> lineOf(const char16_t* text) { return CTLineCreate(text, GC::GetFont(2)); }
CGFloat letterWidth() { return CTLineGetTypographicBounds(lineOf(u"0").get()).width; }

RetainPtr<CGContext> drawn(const ZeString& text, ZeRect rect, int fontId, int h, int v, int trim)
{
    Canvas canvas(120, 60);
    canvas.drawing.ZeDrawString(text, rect, kBlack, fontId, GC::_eHAlign(h), GC::_eVAlign(v), GC::_eTrim(trim));
    return canvas.bitmap;
}

} // namespace

TEST(ZeGraphicsContext, StringsStandWhereTheirInkSaysSo)
{
    // "0" of font 0: ascent 11.14, descent 2.83; ink 6.05 by 9.08 that starts 0.79 right of the line's start and ends
    // 0.17 below its baseline
    static const struct {
        const char* why;
        int h, v;
        double x, baseline;
    } kRows[] = {
        {"top left", 0, 0, 10, 20 + 11.14 - 2.83},
        {"centre", 2, 1, 10 + (50 - 6.05) / 2, 20 + (30 - 9.08) / 2 + 11.14 - 2.83},
        {"bottom", 1, 2, 10, 20 + 30 - 9.08 + 11.14 - 2.83},
        {"by the descent", 3, 3, 10, 20 + 30 - 2.83},
        {"any other value", -1, 99, 10, 20 + 30 - 2.83},
    };
    for (const auto& row : kRows) {
        const double x = std::round(row.x), baseline = std::round(row.baseline); // letters stand on whole pixels
        const auto floorOf = [](double v) { return static_cast<std::size_t>(std::floor(v)); };
        const auto ceilOf = [](double v) { return static_cast<std::size_t>(std::ceil(v)); };
        const InkBox expected{floorOf(x + 0.79), floorOf(baseline + 0.17 - 9.08), ceilOf(x + 0.79 + 6.05),
                              ceilOf(baseline + 0.17)};
        EXPECT_EQ(inkBoxOf(drawn(L"0", {10, 20, 50, 30}, 0, row.h, row.v, 0).get()), expected) << row.why;
    }
}

TEST(ZeGraphicsContext, LongStringsAreCutFourWays)
{
    static const Trimming kRows[] = {
        {"whole", 0, 4.5, u"abcdefgh"},
        {"cut", 1, 4.5, u"abcd"},
        {"2 is 1", 2, 4.5, u"abcd"},
        {"ellipsis", 3, 4.5, u"abc\u2026"},
        {"4 is 3", 4, 4.5, u"abc\u2026"},
        {"in the middle", 5, 4.5, u"ab\u2026h"},
        {"above 5", 6, 4.5, u"abcd"},
        {"2 more fit", 1, 4.75, u"abcde"},
        {"the first fits, the mark too", 3, 0.835, u"\u2026"},
        {"not even the first", 1, 0.1, u""},
        {"the first is 6 wide, this 5.996", 3, 0.83, u""},
    };
    for (const auto& row : kRows) {
        const double width = row.letters * letterWidth();
        const auto cut = drawn(L"abcdefgh", {10.0, 20.0, width, 30.0}, 2, 0, 3, row.trim);
        const auto expected = CGBitmapContextCreate(120, 60);
        const auto black = CGColorCreateRGBA(0, 0, 0, 1);
        CTLineDraw(lineOf(row.text).get(), expected, {10, 50 - CTFontGetDescent(GC::GetFont(2))}, black);
        EXPECT_TRUE(std::ranges::equal(CGBitmapContextGetPixels(cut), CGBitmapContextGetPixels(expected))) << row.why;
    }
}

TEST(ZeGraphicsContext, TheFirstCharacterNeedsMoreThanItsWidth)
{
    ASSERT_EQ(Canvas(1, 1).drawing.GetSizeWithFont(L"0", 2).width, 6);
    EXPECT_EQ(inkOf(drawn(L"0", {10, 20, 6, 30}, 2, 0, 3, 1).get()), 0);
    EXPECT_GT(inkOf(drawn(L"0", {10.0, 20.0, 6.01, 30.0}, 2, 0, 3, 1).get()), 0);
}

TEST(ZeGraphicsContext, StringsAreDrawnInTheirColourOrNotAtAll)
{
    Canvas canvas(40, 40);
    canvas.drawing.ZeDrawString(L"\x2588", {40, 40}, 0x0000FF80, 0, GC::eHAlignLeft, GC::eVAlignDescent, GC::eTrimNone);
    EXPECT_EQ(canvas.pixel(4, 34), "80000080"); // a full block
    const double lots = 1e300;
    for (const ZeString& text : {ZeString(), ZeString(1, wchar_t(0xD800)), ZeString(1, wchar_t(0x110000))})
        EXPECT_EQ(inkOf(drawn(text, {100, 50}, 0, 0, 0, 3).get()), 0);
    EXPECT_EQ(inkOf(drawn(L"0", {100, 50}, 6, 0, 0, 0).get()), 0);
    EXPECT_EQ(inkOf(drawn(L"0", {lots, lots, lots, lots}, 0, 2, 2, 5).get()), 0);
    EXPECT_GT(inkOf(drawn(ZeString(L"\0\n\x1F600", 3), {100, 50}, 0, 0, 3, 0).get()), 0);
}

TEST(ZeGraphicsContext, TellsTheSizesOfTexts)
{
    Canvas canvas(1, 1);
    EXPECT_EQ(canvas.drawing.GetSizeWithFont(L"000", 2), (tagSIZE{21, 10}));
    EXPECT_EQ(canvas.drawing.GetSizeWithFont(L"000", 6), tagSIZE{});
    EXPECT_EQ(GC::GetFont(-1), nullptr);
    EXPECT_EQ(GC::GetSizeWithFontForScreen(L"0123456789", 0), (tagSIZE{84, 10}));
    EXPECT_EQ(GC::GetSizeWithFontForScreen(L"0", 9), tagSIZE{});
}
