// A rounded rectangle in pieces has the pixels of one drawn as a whole.

#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSRoundedRect.h"
#include "CoreGraphics/Pixels.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t kWidth = 160, kHeight = 120;

void drawWhole(CGContextRef context, NSRect rect, CGFloat radius, bool bordered)
{
    using enum NSAppearanceColorName;
    const CGFloat hairline = bordered ? 1 / NSGraphicsContext::currentScale() : 0;
    for (const bool strokes : {false, true}) {
        if (strokes && !bordered) break;
        CGContextBeginPath(context);
        CGContextAddRoundedRect(context, CGRectInset(rect, hairline / 2, hairline / 2), radius - hairline / 2);
        CGContextSetFillColorWithColor(context, NSAppearanceColor(cardColor));
        CGContextSetStrokeColorWithColor(context, NSAppearanceColor(cardBorderColor));
        CGContextSetLineWidth(context, hairline);
        strokes ? CGContextStrokePath(context) : CGContextFillPath(context);
    }
}

TEST(NSRoundedRect, LooksAsOneDrawnAsAWhole)
{
    using enum NSAppearanceColorName;
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (const NSRect rect : {CGRectMake(4, 4, 40, 28), CGRectMake(4.5, 3.25, 40, 30), CGRectMake(2, 2, 17, 17)}) {
            for (const bool bordered : {false, true}) {
                SCOPED_TRACE(testing::Message() << scale << ' ' << rect.origin.x << ' ' << bordered);
                RetainPtr<CGContext> pictures[2];
                for (int i = 0; i < 2; ++i) {
                    pictures[i] = CGBitmapContextCreate(kWidth, kHeight);
                    const NSGraphicsContext::Scope scope(pictures[i]);
                    CGContextScaleCTM(pictures[i], scale, scale);
                    if (i == 0)
                        drawWhole(pictures[i], rect, 8, bordered);
                    else
                        NSDrawRoundedRect(pictures[i], rect, 8, cardColor,
                                          bordered ? std::optional(cardBorderColor) : std::nullopt);
                }
                EXPECT_LE(largestDifference(pictures[0], pictures[1]), 3);
            }
        }
    }
}

} // namespace
