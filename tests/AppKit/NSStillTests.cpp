// Shapes that are drawn through kept pictures look as if they were drawn each time.

#include "AppKit/NSStill.h"

#include "AppKit/NSAppearance.h"
#include "CoreGraphics/Pixels.h"

#include <gtest/gtest.h>

namespace {

constexpr CGFloat kSide = 30;

CGColorRef accent() { return NSAppearanceColor(NSAppearanceColorName::controlAccentColor); }
CGColorRef border() { return NSAppearanceColor(NSAppearanceColorName::knobBorderColor); }

/// No turn or mirror image of it looks the same.
void drawLeaf(CGContextRef context, CGRect rect)
{
    CGContextSetFillColorWithColor(context, accent());
    CGContextSetStrokeColorWithColor(context, border());
    CGContextSetLineWidth(context, 1.5);
    for (const bool strokes : {false, true}) {
        CGContextBeginPath(context);
        CGContextMoveToPoint(context, rect.origin.x + 3, rect.origin.y + 4);
        CGContextAddCurveToPoint(context, rect.origin.x + 28, rect.origin.y + 2, rect.origin.x + 27, rect.origin.y + 14,
                                 rect.origin.x + 8, rect.origin.y + 27);
        CGContextClosePath(context);
        strokes ? CGContextStrokePath(context) : CGContextFillPath(context);
    }
}

RetainPtr<CGContext> paper(CGFloat scale)
{
    auto context = CGBitmapContextCreate(160, 160);
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardColor));
    CGContextFillRect(context, CGRectMake(0, 0, 160, 160));
    CGContextScaleCTM(context, scale, scale);
    return context;
}

/// @return how often it was drawn rather than copied
int timesDrawn(CGContextRef context, CGRect rect, const NSStillKey& key)
{
    int times = 0;
    NSDrawStill(context, rect, key, [&](CGContextRef on) {
        drawLeaf(on, rect);
        ++times;
    });
    return times;
}

TEST(NSStill, LooksAsDrawnWhereverItStands)
{
    const NSStillKey key{"leaf", {accent(), border()}};
    for (const CGFloat scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (const NSPoint at : {NSPoint{4, 4}, {4.3, 7.9}, {-11, 2.25}, {19.9999999, 5}, {41.5, -8}}) {
            SCOPED_TRACE(testing::Message() << "scale " << scale << " at " << at.x << ", " << at.y);
            const CGRect rect = CGRectMake(at.x, at.y, kSide, kSide);
            const auto direct = paper(scale), first = paper(scale), second = paper(scale);
            drawLeaf(direct, rect);
            timesDrawn(first, rect, key);
            EXPECT_EQ(timesDrawn(second, rect, key), 0);
            EXPECT_EQ(largestDifference(first, second), 0);
            EXPECT_LE(largestDifference(first, direct), 4);
        }
    }
}

TEST(NSStill, IsKnownByAllThatItsLookDependsOn)
{
    const CGRect rect = CGRectMake(4, 4, kSide, kSide);
    const NSStillKey key{"known leaf", {accent(), border()}, {1, 2, 3}, 4};
    const auto context = paper(1);
    EXPECT_EQ(timesDrawn(context, rect, key), 1);
    EXPECT_EQ(timesDrawn(context, CGRectOffset(rect, 17, 3), key), 0) << "where it stands doesn't matter";

    NSStillKey others[6];
    std::fill(std::begin(others), std::end(others), key);
    others[0].shape = "another";
    others[1].colors[0] = border();
    others[2].colors[1] = nullptr;
    others[3].measures[2] = 2.5;
    others[4].variant = 5;
    others[5].measures[0] = 0;
    for (const NSStillKey& other : others) EXPECT_EQ(timesDrawn(context, rect, other), 1) << &other - others;
    EXPECT_EQ(timesDrawn(context, CGRectMake(4, 4, kSide, kSide + 1), key), 1) << "size";
    EXPECT_EQ(timesDrawn(context, CGRectMake(4.5, 4, kSide, kSide), key), 1) << "place between pixels";
    const auto fine = paper(2);
    EXPECT_EQ(timesDrawn(fine, rect, key), 1) << "scale";
    EXPECT_EQ(timesDrawn(context, rect, key), 0);
}

TEST(NSStill, DrawsAsItIsWhatIsLargeOrTurned)
{
    const NSStillKey key{"plain leaf"};
    const auto stretched = paper(1), mirrored = paper(1), context = paper(1);
    CGContextScaleCTM(stretched, 1, 1.5);
    CGContextScaleCTM(mirrored, -1, -1);
    const CGRect rect = CGRectMake(4, 4, kSide, kSide);
    const CGFloat endless = std::numeric_limits<CGFloat>::infinity();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(timesDrawn(stretched, rect, key), 1);
        EXPECT_EQ(timesDrawn(mirrored, rect, key), 1);
        EXPECT_EQ(timesDrawn(context, CGRectMake(0, 0, 3000, 40), key), 1);
        EXPECT_EQ(timesDrawn(context, CGRectMake(endless, 0, 10, 10), key), 1);
        EXPECT_EQ(timesDrawn(context, CGRectMake(0, 0, -10, 10), key), 1);
    }
}

TEST(NSStill, LetsThoseGoThatWereNotDrawnForLong)
{
    const auto context = paper(1);
    const CGRect large = CGRectMake(0, 0, 120, 120);
    NSStillKey key{"many leaves"};
    timesDrawn(context, large, key);
    for (int i = 1; i < 100; ++i) {
        key.variant = i;
        EXPECT_EQ(timesDrawn(context, large, key), 1);
    }
    EXPECT_EQ(timesDrawn(context, large, key), 0) << "the newest stays";
    key.variant = 0;
    EXPECT_EQ(timesDrawn(context, large, key), 1) << "100 of them take more than a megabyte";
}

} // namespace
