#include "Pixels.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr CGRect kAll{{0, 0}, {1000, 1000}};
constexpr std::pair<const char*, char> kInk[] = {{"000000ff", '#'}, {"00000000", '.'}};

/// A line along the middle of the only row.
std::string rowWithDash(CGFloat phase, const std::vector<CGFloat>& lengths)
{
    const auto context = CGBitmapContextCreate(8, 1);
    CGContextSetLineDash(context, phase, lengths.data(), lengths.size());
    const CGPoint ends[] = {{0, 0.5}, {8, 0.5}};
    CGContextStrokeLineSegments(context, ends, 2);
    return drawingOf(context, kInk);
}

} // namespace

TEST(CGContext, DashesLines)
{
    static const struct {
        const char* why;
        CGFloat phase;
        std::vector<CGFloat> lengths;
        const char* drawing;
    } kRows[] = {
        {"line and gap", 0, {2, 1}, "##.##.##\n"},
        {"from within the pattern", 1, {2, 1}, "#.##.##.\n"},
        {"one length is line and gap", 0, {2}, "##..##..\n"},
        {"no gap at all", 0, {2, 0}, "########\n"},
        {"none", 0, {}, "########\n"},
        {"sum 0", 0, {0, 0}, "########\n"},
        {"negative", 0, {2, -1}, "########\n"},
        {"not a number", 0, {2, kNaN}, "########\n"},
        {"without end", 0, {kInfinity, 1}, "########\n"},
        {"phase is no number", kNaN, {2, 1}, "########\n"},
    };
    for (const auto& row : kRows) EXPECT_EQ(rowWithDash(row.phase, row.lengths), row.drawing) << row.why;
}

TEST(CGContext, BlendsPremultipliedWithWhatIsThere)
{
    static const struct {
        const char* why;
        std::array<double, 4> below, above;
        double stateAlpha;
        const char* pixel;
        CGBlendMode mode = kCGBlendModeNormal;
    } kRows[] = {
        {"red comes first", {0, 0, 0, 0}, {1, 0, 0, 1}, 1, "ff0000ff"},
        {"blue comes third", {0, 0, 0, 0}, {0, 0, 1, 1}, 1, "0000ffff"},
        {"colour times alpha", {0, 0, 0, 0}, {1, 0.5, 0, 0.5}, 1, "80400080"},
        {"half over opaque: 255 * 127 / 255 stays", {0, 1, 0, 1}, {1, 0, 0, 0.5}, 1, "807f00ff"},
        {"the state's alpha multiplies", {0, 1, 0, 1}, {1, 0, 0, 1}, 0.5, "807f00ff"},
        {"0.2 is 51 of 255", {1, 1, 1, 1}, {0, 0, 0, 1}, 0.2, "ccccccff"},
        {"components are kept to their range", {0, 0, 0, 0}, {7, -1, kNaN, 2}, kInfinity, "ff0000ff"},
        {"no alpha, no change", {0, 0, 1, 1}, {1, 1, 1, 1}, kNaN, "0000ffff"},
        {"copy", {1, 1, 1, 1}, {1, 0, 0, 0.5}, 1, "80000080", kCGBlendModeCopy},
        {"difference", {0.2, 0.8, 1, 1}, {1, 1, 1, 1}, 1, "cc3300ff", kCGBlendModeDifference},
        {"difference from nothing", {0, 0, 0, 0}, {1, 1, 0, 1}, 1, "ffff00ff", kCGBlendModeDifference},
        {"an unknown mode is the normal one", {1, 1, 1, 1}, {1, 0, 0, 0.5}, 1, "ff7f7fff", CGBlendMode(5)},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto context = CGBitmapContextCreate(2, 1);
        fill(context, kAll, row.below[0], row.below[1], row.below[2], row.below[3]);
        const std::string before = pixelOf(context, 1, 0);
        CGContextSetAlpha(context, row.stateAlpha);
        CGContextSetBlendMode(context, row.mode);
        fill(context, CGRectMake(0, 0, 1, 1), row.above[0], row.above[1], row.above[2], row.above[3]);
        EXPECT_EQ(pixelOf(context, 0, 0), row.pixel);
        EXPECT_EQ(pixelOf(context, 1, 0), before) << "beside it";
    }
}

TEST(CGContext, CopyingLeavesAloneWhatIsNotDrawnOn)
{
    const auto red = CGColorCreateRGBA(1, 0, 0, 1);
    const CGColorRef colors[] = {red, red};
    const auto gradient = CGGradientCreate(colors, std::array{0.0, 1.0});
    const auto context = CGBitmapContextCreate(6, 2);
    fill(context, kAll, 0, 0, 0, 1);
    CGContextSetBlendMode(context, kCGBlendModeCopy);
    CGContextDrawLinearGradient(context, gradient, {2, 0}, {4, 0});
    CGContextDrawLinearGradient(context, gradient, {2, 0}, {2, 0});
    static constexpr std::pair<const char*, char> kMap[] = {{"000000ff", '#'}, {"ff0000ff", 'r'}, {"80000080", 'h'}};
    EXPECT_EQ(drawingOf(context, kMap), "##rr##\n##rr##\n");

    const auto pixel = CGBitmapContextCreate(1, 1);
    fill(pixel, kAll, 1, 0, 0, 1);
    const auto pattern = CGColorCreateWithPatternImage(CGBitmapContextCreateImage(pixel).get(), 1);
    CGContextSetAlpha(context, 0.5);
    CGContextSetFillColorWithColor(context, pattern);
    CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(drawingOf(context, kMap), "h#rr##\n##rr##\n");
}

TEST(CGContext, KeepsQuadraticCurvesAsTheyAre)
{
    const auto context = CGBitmapContextCreate(16, 16);
    CGContextTranslateCTM(context, 2, 1);
    CGContextMoveToPoint(context, 0, 0);
    CGContextAddQuadCurveToPoint(context, 6, 12, 12, 0);
    CGContextAddQuadCurveToPoint(context, kNaN, 0, 1, 1);
    CGContextClosePath(context);
    const CGPathElements path = CGContextCopyPath(context);
    ASSERT_EQ(path.size(), 3u);
    EXPECT_EQ(path[1].kind, CGPathElement::QuadCurveTo);
    EXPECT_TRUE(path[1].points[0] == (CGPoint{8, 13}) && path[1].points[1] == (CGPoint{14, 1}));
    CGContextFillPath(context);
    EXPECT_TRUE(CGContextCopyPath(context).empty());
    EXPECT_NEAR(inkOf(context), 48, 0.2); // two thirds of the triangle with the control
}

TEST(CGContext, StrokesSegmentsAndRectangles)
{
    const auto context = CGBitmapContextCreate(6, 6);
    const CGPoint points[] = {{0, 0.5},         {2, 0.5}, {kNaN, 3}, {6, 5.5}, {4, 5.5},
                              {kInfinity, 5.5}, {3, 0.5}, {6, 0.5},  {0, 5.5}};
    CGContextStrokeLineSegments(context, points, std::size(points));
    CGContextSetLineWidth(context, 1);
    CGContextStrokeRect(context, CGRectMake(1.5, 2.5, 3, 2));
    EXPECT_EQ(drawingOf(context, kInk), "##.###\n......\n.####.\n.#..#.\n.####.\n......\n");
}

TEST(CGContext, AlphaFirstPixelsAreTheirOwnersOnes)
{
    std::vector<std::uint8_t> bytes{0x80, 0x80, 0, 0, 0xff, 1, 2, 3};
    const auto context = CGBitmapContextCreate(bytes.data(), 2, 1, kCGImageAlphaPremultipliedFirst);
    ASSERT_TRUE(context);
    EXPECT_EQ(pixelOf(context, 0, 0), "80000080");
    EXPECT_EQ(pixelOf(context, 1, 0), "010203ff");
    fill(context, CGRectMake(1, 0, 1, 1), 0, 0.2, 1, 1);
    EXPECT_EQ(hexOf(CGImageGetPixels(CGBitmapContextCreateImage(context).get()), 1), "0033ffff");
    EXPECT_EQ(CGBitmapContextGetData(context), bytes.data());
    EXPECT_EQ(hexOf(bytes, 0) + hexOf(bytes, 1), "80800000ff0033ff");

    const auto last = CGBitmapContextCreate(bytes.data(), 2, 1, kCGImageAlphaPremultipliedLast);
    EXPECT_EQ(pixelOf(last, 0, 0), "80800000");
    EXPECT_EQ(CGBitmapContextGetData(last), bytes.data());
    fill(last, CGRectMake(0, 0, 1, 1), 1, 0, 0, 1);
    EXPECT_EQ(hexOf(bytes, 0), "ff0000ff");
    EXPECT_FALSE(CGBitmapContextCreate(bytes.data(), 2, 1, CGImageAlphaInfo(0)));
    EXPECT_FALSE(CGBitmapContextCreate(nullptr, 2, 1, kCGImageAlphaPremultipliedFirst));
    EXPECT_FALSE(CGBitmapContextCreate(bytes.data(), 0, 1, kCGImageAlphaPremultipliedFirst));
    EXPECT_EQ(CGBitmapContextGetData(nullptr), nullptr);
}

TEST(CGContext, TextMatrixIsNoPartOfTheSavedState)
{
    const auto context = CGBitmapContextCreate(1, 1);
    CGContextSaveGState(context);
    CGContextSetTextMatrix(context, {2, 0, 0, -2, 0, 0});
    CGContextSetTextPosition(context, 3, 4);
    CGContextSetTextPosition(context, kNaN, 4);
    CGContextSetTextMatrix(context, {1, kInfinity, 0, 1, 0, 0});
    CGContextRestoreGState(context);
    const CGAffineTransform m = CGContextGetTextMatrix(context);
    EXPECT_TRUE(m.a == 2 && m.b == 0 && m.c == 0 && m.d == -2 && m.tx == 3 && m.ty == 4);
}

// Every call with every strange number; afterwards the context draws as if nothing had been.
TEST(CGContext, SurvivesAnyNumbers)
{
    const auto context = CGBitmapContextCreate(8, 8);
    const auto f = letterF();
    const auto pattern = CGColorCreateWithPatternImage(f, 1e-300);
    const auto white = CGColorCreateRGBA(1, 1, 1, 1);
    const CGColorRef colors[] = {white, nullptr};
    static constexpr double kStrange[] = {kNaN, kInfinity, -kInfinity, 1e308, -1e308, 1e-308,
                                          3e9,  -8e6,      1e5,        1e-6,  0,      -1};
    const auto drawWith = [&](CGBlendMode mode, double v, double w) {
        const ScopedGState state(context);
        CGContextSetBlendMode(context, mode);
        const auto gradient = CGGradientCreate(colors, std::array{v, 0.5});
        for (const CGRect& r : {CGRect{{v, w}, {w, v}}, CGRect{{1, v}, {3, w}}, CGRect{{v, 1}, {w, 3}}}) {
            CGContextFillRect(context, r);
            CGContextStrokeRect(context, r);
            CGContextStrokeRectWithWidth(context, r, w);
            CGContextDrawImage(context, r, f);
            CGContextAddRoundedRect(context, r, w);
            CGContextAddEllipseInRect(context, r);
            CGContextFillPath(context);
        }
        CGContextSetLineWidth(context, w);
        CGContextMoveToPoint(context, v, w);
        CGContextAddLineToPoint(context, 4, 4);
        CGContextAddCurveToPoint(context, 1, 2, v, 4, 5, w);
        CGContextAddQuadCurveToPoint(context, v, w, 4, v);
        CGContextAddArc(context, 4, 4, v, w, v);
        CGContextStrokePath(context);
        CGContextSetLineDash(context, w, std::array{std::abs(v), std::abs(w)}.data(), 2);
        CGContextStrokeLineSegments(context, std::array<CGPoint, 4>{{{v, w}, {4, 4}, {0, v}, {8, w}}}.data(), 4);
        CGContextDrawLinearGradient(context, gradient, {v, 0}, {0, w});
        CGContextSetPatternPhase(context, {v, w});
        CGContextScaleCTM(context, v, w);
        CGContextTranslateCTM(context, w, v);
        CGContextSetFillColorWithColor(context, pattern);
        CGContextFillRect(context, CGRectMake(0, 0, 4, 4));
        CGContextDrawImage(context, CGRectMake(0, 0, 4, 4), f);
        CGContextSetStrokeColorWithColor(context, pattern);
        CGContextAddRect(context, CGRectMake(1, 1, 4, 4));
        CGContextStrokePath(context);
        CGContextClipToRect(context, CGRectMake(v, w, 5, 5));
    };
    for (const CGBlendMode mode : {kCGBlendModeNormal, kCGBlendModeCopy, kCGBlendModeDifference})
        for (const double v : kStrange)
            for (const double w : kStrange) drawWith(mode, v, w);
    CGContextClearRect(context, kAll);
    EXPECT_EQ(inkOf(context), 0);
    CGContextFillRect(context, CGRectMake(1, 1, 3, 3));
    EXPECT_EQ(inkOf(context), 9);
}
