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

/// The same colour from end to end.
RetainPtr<CGGradient> plainGradient(CGFloat r, CGFloat g, CGFloat b)
{
    const auto color = CGColorCreateRGBA(r, g, b, 1);
    const CGColorRef colors[] = {color, color};
    const CGFloat locations[] = {0, 1};
    return CGGradientCreate(colors, locations);
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

TEST(CGContext, BlendModesCombineWithWhatIsThere)
{
    static const struct {
        const char* why;
        CGBlendMode mode;
        std::array<double, 4> below, above;
        const char* pixel;
    } kRows[] = {
        {"normal", kCGBlendModeNormal, {1, 1, 1, 1}, {1, 0, 0, 0.5}, "ff7f7fff"},
        {"copy", kCGBlendModeCopy, {1, 1, 1, 1}, {1, 0, 0, 0.5}, "80000080"},
        {"difference", kCGBlendModeDifference, {0.2, 0.8, 1, 1}, {1, 1, 1, 1}, "cc3300ff"},
        {"difference from nothing", kCGBlendModeDifference, {0, 0, 0, 0}, {1, 1, 0, 1}, "ffff00ff"},
        {"unknown", CGBlendMode(5), {1, 1, 1, 1}, {1, 0, 0, 0.5}, "ff7f7fff"},
    };
    for (const auto& row : kRows) {
        const auto context = CGBitmapContextCreate(2, 1);
        fill(context, kAll, row.below[0], row.below[1], row.below[2], row.below[3]);
        const std::string before = pixelOf(context, 1, 0);
        CGContextSetBlendMode(context, row.mode);
        fill(context, CGRectMake(0, 0, 1, 1), row.above[0], row.above[1], row.above[2], row.above[3]);
        EXPECT_EQ(pixelOf(context, 0, 0), row.pixel) << row.why;
        EXPECT_EQ(pixelOf(context, 1, 0), before) << row.why;
    }
}

TEST(CGContext, CopyingLeavesAloneWhatIsNotDrawnOn)
{
    const auto gradient = plainGradient(1, 0, 0);
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

// As for plain drawing: afterwards the context draws as if nothing had been.
TEST(CGContext, ModesSurviveAnyNumbers)
{
    const auto gradient = plainGradient(1, 1, 1);
    const auto context = CGBitmapContextCreate(8, 8);
    static constexpr double kStrange[] = {kNaN, kInfinity, 1e308, -1e308, 1e-308, 3e9, -8e6, 1e-6, 0, -1};
    for (const CGBlendMode mode : {kCGBlendModeCopy, kCGBlendModeDifference})
        for (const double v : kStrange)
            for (const double w : kStrange) {
                const ScopedGState state(context);
                CGContextSetBlendMode(context, mode);
                const CGFloat lengths[] = {std::abs(v), std::abs(w)};
                CGContextSetLineDash(context, w, lengths, 2);
                const CGPoint points[] = {{v, w}, {4, 4}, {0, v}, {8, w}};
                CGContextStrokeLineSegments(context, points, 4);
                CGContextStrokeRect(context, CGRectMake(v, 1, w, 5));
                CGContextAddQuadCurveToPoint(context, v, w, 4, v);
                CGContextStrokePath(context);
                CGContextDrawLinearGradient(context, gradient, {v, 0}, {0, w});
            }
    CGContextClearRect(context, kAll);
    CGContextFillRect(context, CGRectMake(1, 1, 3, 3));
    EXPECT_EQ(inkOf(context), 9);
}
