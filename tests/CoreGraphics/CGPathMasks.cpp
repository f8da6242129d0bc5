// Shapes that are drawn through kept masks look as if Cairo had drawn each of them.
#include "CoreGraphics/CGPathMasks.h"

#include "Pixels.h"

#include <malloc.h>

namespace {

/// A leaf with an open end: no turn or mirror image of it looks the same.
void addLeaf(CGContextRef context)
{
    CGContextMoveToPoint(context, 10, 10);
    CGContextAddCurveToPoint(context, 24, 6, 28, 18, 14, 23);
    CGContextAddLineToPoint(context, 13, 15);
}

struct Look {
    const char* why;
    void (*draw)(CGContextRef);
    void (*before)(CGContextRef) = nullptr; ///< the leaf is added
    void (*after)(CGContextRef) = nullptr;
};

RetainPtr<CGContext> drawn(const Look& look, bool byMask)
{
    auto context = CGBitmapContextCreate(64, 64);
    fill(context, CGRectMake(0, 0, 64, 64), 0.2, 0.4, 0.6, 1);
    const auto red = CGColorCreateRGBA(1, 0, 0, 1);
    CGContextSetFillColorWithColor(context, red);
    CGContextSetStrokeColorWithColor(context, red);
    CGContextSetLineWidth(context, 4);
    if (look.before) look.before(context);
    addLeaf(context);
    if (look.after) look.after(context);
    // points that draw nothing make a path too long for a mask
    for (int i = 0; i < 40 && !byMask; ++i) CGContextMoveToPoint(context, 10, 10);
    look.draw(context);
    return context;
}

int largestDifference(CGContextRef a, CGContextRef b)
{
    const auto some = CGBitmapContextGetPixels(a), others = CGBitmapContextGetPixels(b);
    int largest = 0;
    for (std::size_t i = 0; i < some.size(); ++i) largest = std::max(largest, std::abs(some[i] - others[i]));
    return largest;
}

void halfTransparentGreen(CGContextRef context)
{
    const auto green = CGColorCreateRGBA(0, 1, 0, 0.5);
    CGContextSetFillColorWithColor(context, green);
}

void dashed(CGContextRef context)
{
    const CGFloat lengths[] = {5, 3};
    CGContextSetLineDash(context, 0, lengths, 2);
}

} // namespace

TEST(CGPathMasks, NoShapeTakesTheMaskOfAnother)
{
    static constexpr auto fills = CGContextFillPath, strokes = CGContextStrokePath;
    using Ref = CGContextRef;
    static constexpr Look kLooks[] = {
        {"filled", fills},
        {"pixels farther", fills, [](Ref c) { CGContextTranslateCTM(c, 21, 13); }},
        {"between the pixels", fills, [](Ref c) { CGContextTranslateCTM(c, 0.5, 0.25); }},
        {"a part of a pixel farther", fills, [](Ref c) { CGContextTranslateCTM(c, 0.7, 0.25); }},
        {"half outside", fills, [](Ref c) { CGContextTranslateCTM(c, -15.5, -14.75); }},
        {"larger", fills, [](Ref c) { CGContextScaleCTM(c, 2, 2); }},
        {"narrower", fills, [](Ref c) { CGContextScaleCTM(c, 0.75, 1); }},
        {"mirrored", fills, [](Ref c) { CGContextTranslateCTM(c, 40, 0), CGContextScaleCTM(c, -1, 1); }},
        {"in another colour", fills, halfTransparentGreen},
        {"faded", fills, [](Ref c) { CGContextSetAlpha(c, 0.5); }},
        {"clipped", fills, [](Ref c) { CGContextClipToRect(c, CGRectMake(0, 0, 16, 40)); }},
        {"with steps", fills, [](Ref c) { CGContextSetShouldAntialias(c, false); }},
        {"as a difference", fills, [](Ref c) { CGContextSetBlendMode(c, kCGBlendModeDifference); }},
        {"longer", fills, nullptr, [](Ref c) { CGContextAddLineToPoint(c, 5, 20); }},
        {"stroked", strokes},
        {"stroked, pixels farther", strokes, [](Ref c) { CGContextTranslateCTM(c, 21, 13); }},
        {"with a thinner pen", strokes, [](Ref c) { CGContextSetLineWidth(c, 2.5); }},
        {"with a broad pen", strokes, nullptr, [](Ref c) { CGContextScaleCTM(c, 2, 1); }},
        {"with a high pen", strokes, nullptr, [](Ref c) { CGContextScaleCTM(c, 1, 2); }},
        {"with round ends", strokes, [](Ref c) { CGContextSetLineCap(c, kCGLineCapRound); }},
        {"with long ends", strokes, [](Ref c) { CGContextSetLineCap(c, kCGLineCapSquare); }},
        {"with a cut corner", strokes, [](Ref c) { CGContextSetLineJoin(c, kCGLineJoinBevel); }},
        {"closed", strokes, nullptr, CGContextClosePath},
        {"longer", strokes, nullptr,
         [](Ref c) { CGContextAddLineToPoint(c, 4, 20), CGContextAddLineToPoint(c, 4, 8); }},
        {"with a line beside it", strokes, nullptr,
         [](Ref c) { CGContextMoveToPoint(c, 4, 20), CGContextAddLineToPoint(c, 4, 8); }},
        {"dashed", strokes, dashed},
        {"one pixel wide at a large scale", strokes, nullptr,
         [](Ref c) { CGContextScaleCTM(c, 1000, 1000), CGContextSetLineWidth(c, 0.001); }},
        {"nearly two pixels wide at that scale", strokes, nullptr,
         [](Ref c) { CGContextScaleCTM(c, 1000, 1000), CGContextSetLineWidth(c, 0.0019); }},
    };
    std::vector<RetainPtr<CGContext>> first;
    for (const Look& look : kLooks) {
        SCOPED_TRACE(look.why);
        first.push_back(drawn(look, true));
        EXPECT_LE(largestDifference(first.back(), drawn(look, false).get()), 2);
        for (std::size_t i = 0; i + 1 < first.size(); ++i)
            EXPECT_GT(largestDifference(first.back(), first[i]), 20) << "can't be told from " << kLooks[i].why;
    }
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ(largestDifference(drawn(kLooks[i], true).get(), first[i]), 0) << kLooks[i].why << ", once more";
}

TEST(CGPathMasks, TakeLittleMemory)
{
    const auto context = CGBitmapContextCreate(200, 200);
    const auto drawDisc = [&](CGFloat x, CGFloat diameter) {
        CGContextAddEllipseInRect(context, CGRectMake(x, x, diameter, diameter));
        CGContextFillPath(context);
    };
    const auto kibibytes = [] { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd) / 1024; };
    for (const CGFloat diameter : {90.0, 100.0}) drawDisc(0, diameter); // what the library keeps for itself
    const double before = kibibytes();
    for (int x = 1; x < 100; ++x) drawDisc(x, 100);
    EXPECT_LT(kibibytes() - before, 20) << "one mask wherever the disc stands";
    for (int i = 1; i < 250; ++i) drawDisc(0, 100 + i / 8.0);
    EXPECT_LT(kibibytes() - before, 700) << "the oldest ones go";
}
