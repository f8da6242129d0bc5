#include "Pixels.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr CGRect kAll{{0, 0}, {1000, 1000}};

RetainPtr<CGImage> checker() // black and white, 2 by 2
{
    const auto context = CGBitmapContextCreate(2, 2);
    fill(context, kAll, 1, 1, 1, 1);
    fill(context, CGRectMake(0, 0, 1, 1), 0, 0, 0, 1);
    fill(context, CGRectMake(1, 1, 1, 1), 0, 0, 0, 1);
    return CGBitmapContextCreateImage(context);
}

constexpr std::pair<const char*, char> kInk[] = {{"000000ff", '#'}, {"ffffffff", 'o'}, {"00000000", '.'}};

} // namespace

TEST(CGContext, CoversPartOfAPixelInProportion)
{
    const auto context = CGBitmapContextCreate(3, 1);
    fill(context, CGRectMake(0.5, 0, 1.75, 1), 1, 1, 1, 1);
    EXPECT_EQ(pixelOf(context, 0, 0), "80808080");
    EXPECT_EQ(pixelOf(context, 1, 0), "ffffffff");
    EXPECT_EQ(pixelOf(context, 2, 0), "40404040");

    const auto hard = CGBitmapContextCreate(3, 1);
    CGContextSetShouldAntialias(hard, false);
    fill(hard, CGRectMake(0.25, 0, 2, 1), 1, 1, 1, 1);
    EXPECT_EQ(drawingOf(hard, kInk), "oo.\n");
}

TEST(CGContext, StaysCrispAtFractionalScales)
{
    const auto context = CGBitmapContextCreate(15, 1);
    CGContextScaleCTM(context, 1.25, 1.25);
    CGContextTranslateCTM(context, 2.4, 0);                     // 3 pixels
    fill(context, CGRectMake(0.8, -0.8, 5.6, 2.4), 1, 1, 1, 1); // pixels 4 to 11
    EXPECT_EQ(drawingOf(context, kInk), "....ooooooo....\n");
}

TEST(CGContext, PathsEncloseTheirArea)
{
    using std::numbers::pi;
    static const struct {
        const char* why;
        void (*add)(CGContextRef);
        double area;
    } kRows[] = {
        {"rectangle", [](CGContextRef c) { CGContextAddRect(c, CGRectMake(2.25, 3, 10, 7.5)); }, 75},
        {"rounded", [](CGContextRef c) { CGContextAddRoundedRect(c, CGRectMake(2, 2, 20, 20), 8); },
         400 - (4 - pi) * 64},
        {"too large a radius is half the side",
         [](CGContextRef c) { CGContextAddRoundedRect(c, CGRectMake(2, 2, 20, 20), 1e9); }, pi * 100},
        {"no radius", [](CGContextRef c) { CGContextAddRoundedRect(c, CGRectMake(2, 2, 20, 20), kNaN); }, 400},
        {"ellipse", [](CGContextRef c) { CGContextAddEllipseInRect(c, CGRectMake(2, 2, 28, 20)); }, pi * 140},
        {"full circle", [](CGContextRef c) { CGContextAddArc(c, 16, 16, 12, 0, 99); }, pi * 144},
        {"three quarters, by way of 0",
         [](CGContextRef c) {
             CGContextMoveToPoint(c, 16, 16);
             CGContextAddArc(c, 16, 16, 12, pi / 2, 0);
         },
         0.75 * pi * 144},
        {"triangle",
         [](CGContextRef c) {
             CGContextMoveToPoint(c, 2, 2);
             CGContextAddLineToPoint(c, 22, 2);
             CGContextAddLineToPoint(c, 2, 12);
         },
         100},
        {"a path that wasn't moved to starts at its first point",
         [](CGContextRef c) {
             CGContextAddLineToPoint(c, 2, 2);
             CGContextAddLineToPoint(c, 22, 2);
             CGContextAddLineToPoint(c, 2, 12);
         },
         100},
        {"what was begun anew is forgotten",
         [](CGContextRef c) {
             CGContextAddRect(c, CGRectMake(2, 2, 20, 20));
             CGContextBeginPath(c);
         },
         0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto context = CGBitmapContextCreate(32, 32);
        row.add(context);
        CGContextFillPath(context);
        EXPECT_NEAR(inkOf(context), row.area, 0.6);
        EXPECT_EQ(pixelOf(context, 31, 31), "00000000");
        CGContextFillPath(context); // consumed: nothing is drawn twice
        EXPECT_NEAR(inkOf(context), row.area, 0.6);
    }
}

TEST(CGContext, ArcsTurnFromXTowardY)
{
    const auto context = CGBitmapContextCreate(20, 20);
    CGContextMoveToPoint(context, 10, 10);
    CGContextAddArc(context, 10, 10, 10, 0, std::numbers::pi / 2);
    CGContextClosePath(context);
    CGContextFillPath(context);
    EXPECT_EQ(pixelOf(context, 14, 14), "000000ff"); // lower right
    EXPECT_EQ(pixelOf(context, 14, 5), "00000000");
    EXPECT_EQ(pixelOf(context, 5, 14), "00000000");
}

TEST(CGContext, PathPointsKeepTheTransformationTheyWereAddedUnder)
{
    const auto context = CGBitmapContextCreate(6, 1);
    {
        const ScopedGState state(context);
        CGContextTranslateCTM(context, 2, 0);
        CGContextAddRect(context, CGRectMake(0, 0, 1, 1));
    }
    CGContextScaleCTM(context, 2, 1);
    CGContextAddRect(context, CGRectMake(2, 0, 1, 1));
    CGContextFillPath(context);
    EXPECT_EQ(drawingOf(context, kInk), "..#.##\n");
}

TEST(CGContext, StrokesWithTheWidthAndEndsOfTheState)
{
    const auto context = CGBitmapContextCreate(12, 5);
    auto line = [&] {
        CGContextMoveToPoint(context, 2, 2.5);
        CGContextAddLineToPoint(context, 8, 2.5);
        CGContextStrokePath(context);
        const double ink = inkOf(context);
        CGContextClearRect(context, kAll);
        return ink;
    };
    EXPECT_NEAR(line(), 6, 0.1);
    CGContextSetLineWidth(context, 3);
    CGContextSetLineWidth(context, kNaN); // left out
    EXPECT_NEAR(line(), 18, 0.1);
    CGContextSetLineCap(context, kCGLineCapSquare);
    EXPECT_NEAR(line(), 27, 0.1);
    CGContextSetLineCap(context, kCGLineCapRound);
    EXPECT_NEAR(line(), 18 + std::numbers::pi * 2.25, 0.5);
    CGContextScaleCTM(context, 0.5, 0.5);
    EXPECT_NEAR(line(), (18 + std::numbers::pi * 2.25) / 4, 0.5);
}

TEST(CGContext, FramesTheInsideOfARectangle)
{
    const auto context = CGBitmapContextCreate(6, 5);
    CGContextStrokeRectWithWidth(context, CGRectMake(1, 0, 5, 4), 1);
    EXPECT_EQ(drawingOf(context, kInk), ".#####\n.#...#\n.#...#\n.#####\n......\n");
    CGContextStrokeRectWithWidth(context, CGRectMake(1, 0, 5, 4), 9);
    CGContextClearRect(context, CGRectMake(2, 1, 1, 3));
    EXPECT_EQ(drawingOf(context, kInk), ".#####\n.#.###\n.#.###\n.#.###\n......\n");
}

TEST(CGContext, FillsAsMuchAsIsCovered)
{
    const std::uint8_t bytes[] = {255, 128, 0, 77, 0, 64, 255, 77}; // the last of each row is no pixel
    auto context = CGBitmapContextCreate(6, 4);
    const auto red = CGColorCreateRGBA(1, 0, 0, 1);
    CGContextSetFillColorWithColor(context, red);
    CGContextScaleCTM(context, 3, 3); // says nothing about whole pixels
    CGContextFillCoverage(context, {1, 1}, {3, 2, 4, bytes});
    CGContextFillCoverage(context, {4, 3}, {3, 2, 4, bytes}); // leaves the bitmap
    CGContextFillCoverage(context, {0, 0}, {0, 2, 4, bytes});
    CGContextFillCoverage(context, {0, 0}, {3, 2, 4, nullptr});
    EXPECT_EQ(drawingOf(context, {{"00000000", '.'}, {"ff0000ff", '#'}, {"80000080", '+'}, {"40000040", '-'}}),
              "......\n"
              ".#+...\n"
              "..-#..\n"
              "....#+\n");
}

TEST(CGContext, ClipsToSeveralRectangles)
{
    const CGRect rects[] = {CGRectMake(0, 0, 2, 1), CGRectMake(1, 0, 2, 2)};
    auto context = CGBitmapContextCreate(4, 2);
    const auto fillAllInside = [&](std::span<const CGRect> parts) {
        const ScopedGState state(context);
        CGContextClipToRects(context, parts);
        fill(context, CGRectMake(0, 0, 4, 2), 1, 0, 0, 0.5);
    };
    fillAllInside({});
    fillAllInside(rects);
    EXPECT_EQ(drawingOf(context, {{"00000000", '.'}, {"80000080", '+'}}), "+++.\n.++.\n");
}

TEST(CGContext, FillsARectangleAsAPath)
{
    // rectangles on pixels, between them and beyond the edge; what clips them; what is filled with
    static constexpr CGRect kRects[] = {{{2, 1}, {5, 4}},       {{7, 5}, {-5, -4}}, {{2.5, 1}, {5, 4}},
                                        {{-4, -4}, {40, 9}},    {{9, 9}, {0, 3}},   {{8, 9}, {-1e308, -5}},
                                        {{0, 0}, {HUGE_VAL, 5}}};
    static constexpr std::array<CGFloat, 4> kColors[] = {
        {1, 1, 1, 1}, {0.1, 0.502, 0.998, 1}, {0.0019, 0.00196, 0.00197, 1}, {0.3, 0.6, 0.9, 0.5}};
    using Prepare = void (*)(CGContextRef);
    static constexpr Prepare kStates[] = {
        [](CGContextRef) {},
        [](CGContextRef c) {
            CGContextClipToRect(c, {{3, 2}, {2, 9}});
        },
        [](CGContextRef c) {
            CGContextClipToRect(c, {{3.5, 2}, {2, 9}});
        },
        [](CGContextRef c) {
            CGContextAddEllipseInRect(c, {{1, 1}, {8, 8}});
            CGContextClip(c);
            CGContextClipToRect(c, {{0, 0}, {6, 6}});
        },
        [](CGContextRef c) {
            CGContextClipToRect(c, {{30, 30}, {2, 2}});
        },
        [](CGContextRef c) { CGContextSetBlendMode(c, kCGBlendModeCopy); },
        [](CGContextRef c) { CGContextSetBlendMode(c, kCGBlendModeDifference); },
        [](CGContextRef c) { CGContextSetAlpha(c, 0.25); },
        [](CGContextRef c) {
            CGContextSaveGState(c);
            CGContextClipToRect(c, {{0, 0}, {1, 1}});
            CGContextRestoreGState(c);
            CGContextTranslateCTM(c, 9, 0);
            CGContextScaleCTM(c, -1, 2);
        },
    };
    for (const CGRect& rect : kRects)
        for (const auto& color : kColors)
            for (const Prepare& prepare : kStates) {
                const auto ink = CGColorCreateRGBA(color[0], color[1], color[2], color[3]);
                SCOPED_TRACE(testing::Message()
                             << &rect - kRects << ' ' << &color - kColors << ' ' << &prepare - kStates);
                const auto filled = CGBitmapContextCreate(12, 12), expected = CGBitmapContextCreate(12, 12);
                for (const auto& context : {filled, expected}) {
                    fill(context, {{0, 3}, {12, 4}}, 0.2, 0.7, 0.4, 1);
                    prepare(context);
                    CGContextSetFillColorWithColor(context, ink);
                }
                CGContextFillRect(filled, rect);
                CGContextAddRect(expected, rect);
                CGContextFillPath(expected);
                EXPECT_EQ(largestDifference(filled, expected), 0);
            }
}

TEST(CGContext, DrawsAPictureTheSameWithinAnyClip)
{
    const auto whole = CGBitmapContextCreate(8, 8);
    fill(whole, {{0, 0}, {8, 8}}, 0.9, 0.1, 0.3, 0.4);
    fill(whole, {{3, 2}, {3, 9}}, 0.1, 0.2, 0.9, 1);
    const auto image = CGBitmapContextCreateImage(whole), cut = CGImageCreateWithImageInRect(image, {{2, 1}, {5, 4}});
    static constexpr CGRect kAllInParts[] = {{{0, 0}, {5, 12}}, {{5, 0}, {7, 12}}};
    for (const auto& drawn : {image, cut})
        for (const CGPoint place : {CGPoint{1, 2}, CGPoint{-3, 9}, CGPoint{10, -5}, CGPoint{40, 0}, CGPoint{1.5, 2}}) {
            SCOPED_TRACE(testing::Message() << CGImageGetWidth(drawn) << " at " << place.x);
            const auto direct = CGBitmapContextCreate(12, 12), inParts = CGBitmapContextCreate(12, 12);
            CGContextClipToRects(inParts, kAllInParts);
            for (const auto& context : {direct, inParts}) {
                fill(context, {{0, 0}, {6, 12}}, 0.2, 0.7, 0.4, 1);
                CGContextDrawImage(context, {place, {double(CGImageGetWidth(drawn)), double(CGImageGetHeight(drawn))}},
                                   drawn);
            }
            EXPECT_EQ(largestDifference(direct, inParts), 0);
        }
}

TEST(CGContext, TellsWhatDrawingCanReach)
{
    const auto context = CGBitmapContextCreate(20, 10);
    const auto reached = [&] { return CGContextGetClipBoundingBox(context); };
    EXPECT_EQ(reached(), CGRectMake(0, 0, 20, 10));
    CGContextScaleCTM(context, 2, -1);
    CGContextTranslateCTM(context, 1, 0);
    EXPECT_EQ(reached(), CGRectMake(-1, -10, 10, 10));
    CGContextSaveGState(context);
    CGContextClipToRect(context, CGRectMake(2, -100, 3, 98));
    EXPECT_EQ(reached(), CGRectMake(2, -10, 3, 8));
    CGContextClipToRect(context, CGRectMake(50, 0, 1, 1));
    EXPECT_TRUE(CGRectIsNull(reached()));
    CGContextRestoreGState(context);
    EXPECT_EQ(reached(), CGRectMake(-1, -10, 10, 10));
    CGContextScaleCTM(context, 0, 1);
    EXPECT_TRUE(CGRectIsNull(reached()));
    EXPECT_TRUE(CGRectIsNull(CGContextGetClipBoundingBox(nullptr)));
}

TEST(CGContext, RestoresEverythingItSaved)
{
    const auto context = CGBitmapContextCreate(4, 2);
    CGContextSaveGState(context);
    CGContextClipToRect(context, CGRectMake(1, 0, 1, 9));
    CGContextTranslateCTM(context, 1, 1);
    CGContextSetAlpha(context, 0);
    fill(context, kAll, 1, 0, 0, 1);
    CGContextSetAlpha(context, 1);
    fill(context, kAll, 1, 1, 1, 1);
    CGContextRestoreGState(context);
    CGContextRestoreGState(context); // one too many
    EXPECT_EQ(drawingOf(context, kInk), "....\n.o..\n");
    CGContextFillRect(context, CGRectMake(2, 0, 1, 1)); // black again, anywhere
    EXPECT_EQ(drawingOf(context, kInk), "..#.\n.o..\n");
    EXPECT_EQ(CGContextGetCTM(context).tx, 0);
}

TEST(CGContext, ClipsToPathsThatMeet)
{
    const auto context = CGBitmapContextCreate(4, 3);
    CGContextAddRect(context, CGRectMake(0, 0, 3, 3));
    CGContextClip(context);
    CGContextClipToRect(context, CGRectMake(2, 1, 9, 9));
    fill(context, kAll, 1, 1, 1, 1);
    EXPECT_EQ(drawingOf(context, kInk), "....\n..o.\n..o.\n");
}

TEST(CGContext, PatternsStartAtThePhaseWhateverTheView)
{
    const auto image = checker();
    const auto color = CGColorCreateWithPatternImage(image, 1);
    const auto context = CGBitmapContextCreate(6, 2);
    CGContextSetFillColorWithColor(context, color);
    CGContextFillRect(context, CGRectMake(0, 0, 3, 2));
    CGContextTranslateCTM(context, 3, 0); // the neighbour goes on where the first one ended
    CGContextFillRect(context, CGRectMake(0, 0, 3, 2));
    EXPECT_EQ(drawingOf(context, kInk), "#o#o#o\no#o#o#\n");
    CGContextSetPatternPhase(context, {1, 0});
    CGContextFillRect(context, CGRectMake(0, 0, 3, 2));
    EXPECT_EQ(drawingOf(context, kInk), "#o##o#\no#oo#o\n");
}

TEST(CGContext, PatternsFollowTheScaleSharply)
{
    const auto image = checker();
    const auto once = CGColorCreateWithPatternImage(image, 1), twice = CGColorCreateWithPatternImage(image, 2);
    const auto context = CGBitmapContextCreate(8, 2);
    CGContextScaleCTM(context, 2, 2);
    CGContextSetFillColorWithColor(context, once);
    CGContextFillRect(context, CGRectMake(0, 0, 2, 1));
    CGContextSetFillColorWithColor(context, twice);
    CGContextFillRect(context, CGRectMake(2, 0, 2, 1));
    EXPECT_EQ(drawingOf(context, kInk), "##oo#o#o\n##ooo#o#\n");

    CGContextClearRect(context, kAll);
    CGContextSetAlpha(context, 0.5);
    CGContextFillRect(context, CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(pixelOf(context, 0, 0), "00000080");
    EXPECT_EQ(pixelOf(context, 1, 0), "80808080");
    EXPECT_EQ(pixelOf(context, 6, 0), "00000000");
}

TEST(CGContext, DrawsImagesUpright)
{
    const auto context = CGBitmapContextCreate(6, 6);
    const auto f = letterF();
    CGContextDrawImage(context, CGRectMake(1, 0, 4, 5), f);
    EXPECT_EQ(drawingOf(context, kInk), ".oooo.\n.o###.\n.ooo#.\n.o###.\n.o###.\n......\n");
    CGContextSetAlpha(context, 0.5);
    CGContextClearRect(context, kAll);
    CGContextDrawImage(context, CGRectMake(1, 0, 4, 5), f);
    EXPECT_EQ(pixelOf(context, 1, 0), "80808080");
    EXPECT_EQ(pixelOf(context, 2, 1), "00000080");
}

TEST(CGContext, ScaledImagesReachTheirEdgesAndNoFarther)
{
    const auto context = CGBitmapContextCreate(14, 14);
    CGContextScaleCTM(context, 1.5, 1.5);
    const auto f = letterF();
    CGContextDrawImage(context, CGRectMake(2, 2, 4, 6), f); // pixels 3 to 9, 3 to 12
    EXPECT_EQ(pixelOf(context, 3, 3), "ffffffff");
    EXPECT_EQ(pixelOf(context, 3, 11), "ffffffff");
    EXPECT_EQ(pixelOf(context, 8, 11), "000000ff");
    EXPECT_NEAR(inkOf(context), 6 * 9, 1e-9);
}

TEST(CGContext, GradientsRunBetweenTheirPoints)
{
    const auto red = CGColorCreateRGBA(1, 0, 0, 1), blue = CGColorCreateRGBA(0, 0, 1, 1);
    const CGColorRef colors[] = {red, blue};
    const CGFloat locations[] = {0, 1};
    const auto gradient = CGGradientCreate(colors, locations);
    const auto context = CGBitmapContextCreate(104, 1);
    CGContextDrawLinearGradient(context, gradient, {2, 0}, {102, 0});
    auto channel = [&](std::size_t x, std::size_t k) { return int(CGBitmapContextGetPixels(context)[4 * x + k]); };
    EXPECT_EQ(pixelOf(context, 1, 0), "00000000");
    EXPECT_EQ(pixelOf(context, 102, 0), "00000000");
    for (std::size_t x = 2; x < 102; ++x) {
        const double t = (double(x) - 1.5) / 100;
        EXPECT_NEAR(channel(x, 0), 255 * (1 - t), 1.5) << x;
        EXPECT_NEAR(channel(x, 2), 255 * t, 1.5) << x;
        EXPECT_EQ(channel(x, 3), 255) << x;
    }
    EXPECT_FALSE(CGGradientCreate({}, locations));
}

TEST(CGContext, SnapshotsOutliveTheContextAndItsChanges)
{
    RetainPtr<CGImage> image;
    {
        const auto context = CGBitmapContextCreate(2, 1);
        fill(context, CGRectMake(0, 0, 1, 1), 1, 0, 0, 1);
        image = CGBitmapContextCreateImage(context);
        fill(context, kAll, 0, 0, 1, 1);
    }
    EXPECT_EQ(hexOf(CGImageGetPixels(image), 0), "ff0000ff");
    EXPECT_EQ(hexOf(CGImageGetPixels(image), 1), "00000000");
}

TEST(CGContext, RefusesSizesThatNoBitmapHas)
{
    EXPECT_FALSE(CGBitmapContextCreate(0, 1));
    EXPECT_FALSE(CGBitmapContextCreate(1, 32768));
    EXPECT_FALSE(CGBitmapContextCreate(std::size_t(-1), 1));
    EXPECT_TRUE(CGBitmapContextCreate(32767, 1));
}

TEST(CGContext, NothingHappensWithoutContextColorOrImage)
{
    CGContextSaveGState(nullptr);
    CGContextFillRect(nullptr, kAll);
    CGContextStrokePath(nullptr);
    EXPECT_TRUE(CGBitmapContextGetPixels(nullptr).empty());
    EXPECT_FALSE(CGBitmapContextCreateImage(nullptr));
    EXPECT_FALSE(CGColorCreateWithPatternImage(nullptr, 1));

    const auto context = CGBitmapContextCreate(2, 2);
    CGContextDrawImage(context, kAll, nullptr);
    CGContextDrawLinearGradient(context, nullptr, {}, {1, 1});
    CGContextSetFillColorWithColor(context, nullptr);
    CGContextFillRect(context, kAll);
    EXPECT_EQ(inkOf(context), 0);
}
