#include "Drawing.h"
#include "ZeUIBitmap.h"

#include <climits>
#include <cmath>
#include <sstream>

namespace {

constexpr std::pair<const char*, char> kInk[] = {{"000000ff", '#'}, {"ffffffff", 'o'}, {"00000000", '.'}};

/// "M0,0 C1,1 2,4 3,3": kinds and points of the current path.
std::string pathOf(CGContextRef context)
{
    std::ostringstream text;
    for (const CGPathElement& element : CGContextCopyPath(context)) {
        text << "MLQC"[element.kind];
        const int count = element.kind < CGPathElement::QuadCurveTo ? 1 : element.kind;
        for (int i = 0; i < count; ++i)
            text << (i ? " " : "") << element.points[std::size_t(i)].x << "," << element.points[std::size_t(i)].y;
        text << " ";
    }
    return text.str();
}

RetainPtr<CGImage> imageOf(const ZeGraphicsContext& drawing)
{
    return RetainPtr<CGImage>::adopt(drawing.ZeCreateImageFromContext());
}

} // namespace

TEST(ZeGraphicsContext, ColourWordsFillRectangles)
{
    for (const auto& [word, pixel] : {std::pair(0xFFFFFFFFu, "ffffffff"),
                                      {0xFF0000FFu, "0000ffff"},
                                      {0x336699FFu, "996633ff"},
                                      {0x0000FF80u, "80000080"},
                                      {0xFFFFFF00u, "00000000"}}) {
        Canvas canvas(4, 3);
        canvas.drawing.ZeFillRectSolid(word, {1, 1, 2, 1});
        EXPECT_EQ(canvas.pixel(1, 1), pixel);
        EXPECT_EQ(canvas.pixel(2, 1), pixel);
        EXPECT_EQ(canvas.pixel(3, 1) + canvas.pixel(1, 0) + canvas.pixel(1, 2), "000000000000000000000000");
    }
}

TEST(ZeGraphicsContext, GradientsRunDiagonallyWithoutClip)
{
    Canvas canvas(8, 8);
    canvas.drawing.ZeFillRectGradient(kBlack, kWhite, {2, 2, 4, 4}); // the strip 4 <= x + y <= 12
    auto red = [&](std::size_t x, std::size_t y) {
        return int(CGBitmapContextGetPixels(canvas.bitmap)[4 * (8 * y + x)]);
    };
    EXPECT_EQ(canvas.pixel(1, 1), "00000000");
    EXPECT_EQ(canvas.pixel(6, 6), "00000000");
    EXPECT_NEAR(red(2, 2), 255 * 1 / 8.0, 2); // centre (2.5, 2.5): 1 of 8 along
    EXPECT_NEAR(red(5, 5), 255 * 7 / 8.0, 2);
    EXPECT_NEAR(red(4, 3), 255 * 4 / 8.0, 2);
    EXPECT_NEAR(red(0, 7), 255 * 4 / 8.0, 2); // outside of the rectangle
    EXPECT_EQ(canvas.pixel(7, 0).substr(6), "ff");
}

TEST(ZeGraphicsContext, FramesLieInsideTheRectangle)
{
    Canvas canvas(22, 12);
    canvas.drawing.ZeDrawRectangle(kWhite, {0, 0, 20, 10}, 1.0); // along (1, 1) to (19.5, 9.5)
    EXPECT_EQ(inkBoxOf(canvas.bitmap), (InkBox{0, 0, 20, 10}));
    EXPECT_EQ(canvas.pixel(0, 5) + canvas.pixel(1, 5) + canvas.pixel(2, 5), "808080808080808000000000");
    EXPECT_EQ(canvas.pixel(10, 0) + canvas.pixel(10, 1), "8080808080808080");
    EXPECT_EQ(canvas.pixel(19, 5) + canvas.pixel(10, 9), "ffffffffffffffff");
    EXPECT_NEAR(inkOf(canvas.bitmap), 2 * (18.5 + 8.5), 0.2);

    Canvas wide(22, 12);
    wide.drawing.ZeDrawRectangle(kBlack, {0, 0, 20, 10}, 3.0); // along (2, 2) to (18.5, 8.5)
    EXPECT_NEAR(inkOf(wide.bitmap), 3 * 2 * (16.5 + 6.5), 0.2);
    EXPECT_EQ(wide.pixel(17, 5), "000000ff");
}

TEST(ZeGraphicsContext, LinesTakeTheirEndsBySixLayouts)
{
    static const struct {
        double a, b, c;
        int layout;
        InkBox box; // none where right is 0
    } kRows[] = {
        {1, 6, 2.5, 0, {1, 2, 6, 3}},  {1, 6, 2.5, 1, {1, 2, 7, 3}},
        {1, 2.5, 6, 2, {1, 2, 7, 3}},  {1, 6, 2.5, 3, {2, 1, 3, 6}},
        {1, 6, 2.5, 4, {2, 1, 3, 7}},  {2.5, 1, 6, 5, {2, 1, 3, 7}},
        {6, -5, 2.5, 1, {1, 2, 6, 3}}, {1, 6, 2.5, 6, {}},
        {1, 6, 2.5, -1, {}},           {1, 6, 2.5, INT_MIN, {}},
        {1, std::nan(""), 2.5, 0, {}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.layout);
        Canvas canvas(8, 8);
        canvas.drawing.ZeDrawLine(kRed, row.a, row.b, row.c, ZeGraphicsContext::_eGCDL(row.layout));
        EXPECT_EQ(inkBoxOf(canvas.bitmap), row.box);
        if (row.box.right > 0) {
            EXPECT_EQ(canvas.pixel(row.box.left, row.box.top), "ff0000ff");
        }
    }

    Canvas whole(8, 20); // whole numbers stay: the line covers half of two columns
    whole.drawing.ZeDrawLine(kWhite, 10, 5, 3, ZeGraphicsContext::eGCDLVertLen);
    EXPECT_EQ(inkBoxOf(whole.bitmap), (InkBox{2, 10, 4, 15}));
    EXPECT_EQ(whole.pixel(2, 10) + whole.pixel(3, 14), "8080808080808080");
    Canvas both(8, 8);
    both.drawing.ZeDrawLine(kBlack, 1, 4, 7, 4);
    both.drawing.ZeDrawLine(kBlack, 1.0, 1.5, 4.0, 1.5);
    EXPECT_EQ(inkBoxOf(both.bitmap), (InkBox{1, 1, 7, 5}));
    EXPECT_NEAR(inkOf(both.bitmap), 9, 0.1);
}

TEST(ZeGraphicsContext, DashesStayUntilSolid)
{
    Canvas canvas(8, 3);
    const double lengths[] = {2, 1};
    canvas.drawing.ZeSetLineStyle(1, lengths, 2);
    canvas.drawing.ZeDrawLine(kBlack, 0.0, 0.5, 8.0, 0.5);
    canvas.drawing.ZeSetLineStyle(1, lengths, 0);
    canvas.drawing.ZeDrawLine(kBlack, 0.0, 1.5, 8.0, 1.5);
    canvas.drawing.ZeSetLineStyle(0, lengths, 1);
    canvas.drawing.ZeSetLineStyle(0, nullptr, 2);
    canvas.drawing.ZeDrawLine(kBlack, 0.0, 2.5, 8.0, 2.5);
    EXPECT_EQ(drawingOf(canvas.bitmap, kInk), "#.##.##.\n########\n########\n");
}

TEST(ZeGraphicsContext, XorLinesInvert)
{
    Canvas canvas(6, 2);
    canvas.drawing.ZeFillRectSolid(0x336699FF, {0, 0, 6, 1});
    canvas.drawing.ZeDrawXorLine(1, 0, 4, 0); // from (1.5, 0.5) to (4.5, 0.5)
    EXPECT_EQ(canvas.pixel(0, 0), "996633ff");
    EXPECT_EQ(canvas.pixel(2, 0), "6699ccff");
    EXPECT_EQ(canvas.pixel(3, 0), "6699ccff");
    EXPECT_EQ(canvas.pixel(1, 0), canvas.pixel(4, 0));
    EXPECT_NEAR(std::stoi(canvas.pixel(1, 0).substr(0, 2), nullptr, 16), (0x99 + 0x66) / 2.0, 1);
    EXPECT_EQ(inkBoxOf(canvas.bitmap).bottom, 1u);
    canvas.drawing.ZeDrawXorLine(1, 0, 4, 0);
    EXPECT_EQ(canvas.pixel(2, 0), "996633ff");
    canvas.drawing.ZeFillRectSolid(0x0000FF80, {0, 0, 1, 1}); // replaces from here on
    EXPECT_EQ(canvas.pixel(0, 0), "80000080");
}

TEST(ZeGraphicsContext, CurvesHaveTheirControls)
{
    const auto path = [](std::initializer_list<ZeFPoint> points, int mode, float tension = 1, int chordEnds = 0) {
        Canvas canvas(1, 1);
        canvas.drawing.ZeCalcCurve(points.begin(), static_cast<unsigned>(points.size()), mode, tension, chordEnds);
        return pathOf(canvas.bitmap);
    };
    const std::initializer_list<ZeFPoint> tent = {{0, 0}, {3, 3}, {6, 0}};
    EXPECT_EQ(path(tent, 1), "M0,0 C1,1 2,4 3,3 C4,4 5,1 6,0 ");
    EXPECT_EQ(path(tent, 1, 0.5), "M0,0 C0.5,0.5 2.5,3.5 3,3 C3.5,3.5 5.5,0.5 6,0 ");
    EXPECT_EQ(path(tent, 1, 1, 1), "M0,0 C1,1 2,2 3,3 C4,4 5,1 6,0 ") << "ends by the own chord";
    EXPECT_EQ(path(tent, 1, 1, 2), path(tent, 1)) << "only 1 does that";
    EXPECT_EQ(path(tent, 0), "M0,0 Q1.5,2.5 3,3 Q4.5,2.5 6,0 ");
    EXPECT_EQ(path({{0, 0}, {0, 6}, {6, 6}}, 1), "M0,0 C0,0 0,6 0,6 C2,6 4,6 6,6 ") << "upright chords count as level";
    EXPECT_EQ(path(tent, 2), "M0,0 L3,3 L6,0 ");
    EXPECT_EQ(path(tent, 1, 0), "M0,0 L3,3 L6,0 ") << "no tension";
    EXPECT_EQ(path(tent, 3), "M0,0 ") << "another mode";
    EXPECT_EQ(path({{0, 0}}, 1), "M0,0 ");
    EXPECT_EQ(path({}, 1), "");
    Canvas canvas(1, 1);
    canvas.drawing.ZeCalcCurve(nullptr, 3, 1, 1, 0);
    EXPECT_EQ(pathOf(canvas.bitmap), "");
}

TEST(ZeGraphicsContext, PathsAreStrokedAndFilled)
{
    const ZeFPoint square[] = {{1.5, 1.5}, {5.5, 1.5}, {5.5, 5.5}, {1.5, 5.5}};
    Canvas stroked(7, 7);
    CGContextMoveToPoint(stroked.bitmap, 0, 0); // what was begun before is dropped
    CGContextAddLineToPoint(stroked.bitmap, 7, 0);
    stroked.drawing.ZeDrawPath(kWhite, square, 4, 1.0, 0, 0, 0);
    EXPECT_EQ(stroked.pixel(1, 4) + stroked.pixel(3, 1) + stroked.pixel(5, 5), "ffffffffffffffffffffffff");
    EXPECT_EQ(stroked.pixel(3, 3) + stroked.pixel(0, 0), "0000000000000000");

    const ZeFPoint hill[] = {{0, 6}, {3, 0}, {6, 6}};
    Canvas filled(7, 7);
    filled.drawing.ZeFillPath(kBlack, hill, 3, 2, 1, 0);
    EXPECT_NEAR(inkOf(filled.bitmap), 18, 0.1);
    filled.drawing.ZeFillPath(kBlack, hill, -1, 2, 1, 0);
    filled.drawing.ZeDrawPath(kBlack, hill, 0, 1, 0, 0, 0);

    // Curves are those of ZeCalcCurve, 1 wide whatever the width was; a stroke ends by the next chord.
    const ZeFPoint wave[] = {{1, 10}, {8, 2}, {16, 16}, {23, 5}};
    for (const int chordEnds : {0, 1}) {
        Canvas drawn(24, 20), expected(24, 20);
        CGContextSetLineWidth(drawn.bitmap, 5);
        expected.drawing.ZeCalcCurve(wave, 4, 1, 1, chordEnds);
        if (chordEnds == 1) {
            drawn.drawing.ZeFillPath(kBlack, wave, 4, 1, 1, 1);
            CGContextFillPath(expected.bitmap);
        } else {
            drawn.drawing.ZeDrawCurve(kBlack, wave, 4, 1, 1);
            CGContextSetShouldAntialias(expected.bitmap, false);
            CGContextStrokePath(expected.bitmap);
        }
        EXPECT_EQ(drawingOf(drawn.bitmap, kInk), drawingOf(expected.bitmap, kInk)) << chordEnds;
        EXPECT_GT(inkOf(drawn.bitmap), 20);
    }

    const ZeFPoint slope[] = {{0, 1.2}, {12, 6.7}};
    Canvas curve(12, 10);
    curve.drawing.ZeDrawCurve(kBlack, slope, 2, 1, 1);
    EXPECT_EQ(drawingOf(curve.bitmap, kInk).find('?'), std::string::npos) << "edges are not smooth";
    EXPECT_NEAR(inkOf(curve.bitmap), std::hypot(12, 5.5), 2);
    CGContextClearRect(curve.bitmap, CGRectMake(0, 0, 12, 10));
    curve.drawing.ZeDrawLine(kBlack, 0.0, 1.2, 12.0, 6.7);
    EXPECT_NE(drawingOf(curve.bitmap, kInk).find('?'), std::string::npos) << "and are smooth again";
}

TEST(ZeGraphicsContext, OffScreenContextsKeepTheirImage)
{
    const auto f = letterF();
    constexpr const char* kF = "oooo\no###\nooo#\no###\no###\n";
    RetainPtr<CGImage> taken;
    {
        const ZeGraphicsContext drawn(f, true), blank(f, false);
        ASSERT_TRUE(drawn.context && drawn.ownsContext);
        EXPECT_EQ(drawingOf(drawn.context, kInk), kF);
        EXPECT_EQ(inkOf(blank.context), 0);
        EXPECT_EQ(CGBitmapContextGetWidth(blank.context), 4u);
        const auto* bytes = static_cast<const std::uint8_t*>(CGBitmapContextGetData(drawn.context));
        EXPECT_EQ(hexOf({bytes, 80}, 5), "ff000000") << "alpha comes first";
        taken = imageOf(drawn);
    }
    EXPECT_EQ(hexOf(CGImageGetPixels(taken), 5), "000000ff");

    ZeGraphicsContext cleaned(f, true);
    CGImage* image = cleaned.ZeCreateImageFromContext();
    cleaned.ZeImageRelease(nullptr);
    cleaned.ZeImageRelease(&image);
    cleaned.ZeImageRelease(&image);
    EXPECT_EQ(image, nullptr);
    cleaned.ZeCleanupGraphicsContext();
    cleaned.ZeCleanupGraphicsContext();
    EXPECT_TRUE(!cleaned.context && !cleaned.ownsContext);

    Canvas wrapped(1, 1);
    wrapped.drawing.ZeCleanupGraphicsContext();
    EXPECT_EQ(wrapped.drawing.context, wrapped.bitmap.get());
}

TEST(ZeGraphicsContext, CopiesScaledAndOneToOne)
{
    const auto f = letterF();
    const ZeGraphicsContext source(f, true);
    static const struct {
        const char* why;
        ZePoint to;
        ZeRect from;
        const char* drawing; // 6 by 6
    } kRows[] = {
        {"elsewhere", {1.5, 2.4}, {0, 2, 3, 2}, "......\n......\n..ooo.\n..o##.\n......\n......\n"},
        {"halves go up, and the place is a little tolerant",
         {-0.5, 0.49999999},
         {0.5, 0.5, 2.0, 2.0},
         "......\n##....\noo....\n......\n......\n......\n"},
        {"no size is all of it", {2, 0}, {0.4, 0.4}, "..oooo\n..o###\n..ooo#\n..o###\n..o###\n......\n"},
        {"cut at the edge", {0, 0}, {3, 4, 1, 5}, "#.....\n#.....\n#.....\n#.....\n#.....\n......\n"},
        {"outside of the source", {0, 0}, {4, 0, 2, 2}, "......\n......\n......\n......\n......\n......\n"},
    };
    for (const auto& row : kRows) {
        Canvas canvas(6, 6);
        canvas.drawing.ZeCopyBitmap(row.to, &source, nullptr, row.from);
        EXPECT_EQ(drawingOf(canvas.bitmap, kInk), row.drawing) << row.why;
    }
    Canvas same(6, 6);
    same.drawing.ZeDrawImage1to1({1, 0, 3, 3}, &source, nullptr);
    EXPECT_EQ(drawingOf(same.bitmap, kInk), ".ooo..\n.###..\n.oo#..\n......\n......\n......\n") << "to the same place";
    Canvas itself(6, 2);
    itself.drawing.ZeFillRectSolid(kBlack, {0, 0, 2, 1});
    itself.drawing.ZeCopyBitmap({1, 1}, &itself.drawing, nullptr, {0, 0, 3, 1});
    EXPECT_EQ(drawingOf(itself.bitmap, kInk), "##....\n.##...\n") << "onto itself";
    Canvas twice(8, 10);
    twice.drawing.ZeDrawImageToFit({8, 10}, &source, nullptr);
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(twice.pixel(i, 0) + twice.pixel(0, i), "ffffffffffffffff");
    EXPECT_EQ(twice.pixel(7, 9) + twice.pixel(7, 3), "000000ff000000ff");
}

TEST(ZeGraphicsContext, PartsAndTheirWholeEndTogether)
{
    const auto f = letterF();
    ZeGraphicsContext source(f, true);
    ZeBitmap* whole = nullptr;
    ZeRect rect(1.0, 2.0, 0.2, 1.5);
    ZeBitmap* sub = source.ZeCreateSubBitmap(&source, rect, &whole);
    ASSERT_TRUE(sub && whole);
    EXPECT_EQ(rect.width, 4); // all of the source's, cut where it ends
    EXPECT_EQ(rect.height, 1.5);
    EXPECT_EQ(sub->GetWidth(), 3u);
    EXPECT_EQ(sub->GetHeight(), 2u);
    ZeBitmap* none = nullptr;
    source.ZeCopySubBitmap({}, sub, rect, nullptr);
    source.ZeCopySubBitmap({}, sub, rect, &none);
    EXPECT_EQ(sub->GetWidth(), 3u) << "it stays without its whole";
    source.ZeCopySubBitmap({}, sub, rect, &whole);
    EXPECT_EQ(whole, nullptr);

    EXPECT_EQ(source.ZeCreateSubBitmap(&source, rect, nullptr), nullptr);
    EXPECT_EQ(source.ZeCreateSubBitmap(nullptr, rect, &whole), nullptr);
    source.ZeCopySubBitmap({}, nullptr, rect, nullptr);
    source.ZeCopyBitmap({}, nullptr, nullptr, rect);
    EXPECT_EQ(whole, nullptr);
}

TEST(ZeGraphicsContext, DoesNothingWithoutAContext)
{
    ZeGraphicsContext none(static_cast<CGImageRef>(nullptr), true);
    EXPECT_TRUE(!none.context && !none.ownsContext);
    const auto f = letterF();
    ZeGraphicsContext other(f, true);
    const ZeFPoint points[] = {{0, 0}, {1, 1}};
    const double lengths[] = {1};
    none.ZeSetLineStyle(0, lengths, 1);
    none.ZeFillRectSolid(kRed, {4, 5});
    none.ZeFillRectGradient(kRed, kBlue, {4, 5});
    none.ZeDrawRectangle(kRed, {4, 5}, 1);
    none.ZeDrawLine(kRed, 0.0, 0.0, 4.0, 5.0);
    none.ZeDrawLine(kRed, 0, 4, 5, ZeGraphicsContext::eGCDLHorz);
    none.ShiftOrigin(1, 1, true);
    none.ZeDrawXorLine(0, 0, 4, 5);
    none.ZeDrawPath(kRed, points, 2, 1, 0, 0, 0);
    none.ZeDrawCurve(kRed, points, 2, 1, 1);
    none.ZeCalcCurve(points, 2, 1, 1, 0);
    none.ZeCleanupGraphicsContext();
    none.ZeDrawImageToFit({4, 5}, &other, nullptr);
    other.ZeDrawImageToFit({4, 5}, &none, nullptr);
    none.ZeDrawString(L"0", {40, 20}, kRed, 0, ZeGraphicsContext::eHAlignLeft, ZeGraphicsContext::eVAlignTop,
                      ZeGraphicsContext::eTrimEnd);
    EXPECT_EQ(none.GetSizeWithFont(L"0", 0), tagSIZE{});
    EXPECT_EQ(none.ZeCreateImageFromContext(), nullptr);

    ZeRect rect(2, 2);
    ZeBitmap* whole = nullptr;
    EXPECT_EQ(none.ZeCreateSubBitmap(&other, rect, &whole), nullptr);
    EXPECT_EQ(other.ZeCreateSubBitmap(&none, rect, &whole), nullptr);
    EXPECT_EQ(whole, nullptr);
    none.ZeCopyBitmap({}, &other, nullptr, rect);
    ZeBitmap* sub = other.ZeCreateSubBitmap(&other, rect, &whole);
    none.ZeCopySubBitmap({}, sub, rect, &whole);
    ASSERT_TRUE(whole) << "both stay the caller's";
    ZeBitmap::ZeReleaseSubBitmap(&sub);
    ZeBitmap::ZeReleaseSubBitmap(&whole);
    CGImage* image = other.ZeCreateImageFromContext();
    none.ZeImageRelease(&image);
    EXPECT_NE(image, nullptr);
    other.ZeImageRelease(&image);
    EXPECT_EQ(drawingOf(other.context, kInk), "oooo\no###\nooo#\no###\no###\n");
}
