// Copies from one context to another.

#include "ZeUIGraphicsContext.h"

#include "ZeTruncate.h"
#include "ZeUIBitmap.h"

#include <cmath>
#include <memory>

namespace {

/// Hides what division leaves behind: an exact half goes up, whatever its last bits say.
constexpr double kTolerance = 0.000000015;

double Nearest(double value) { return std::floor(value + kTolerance + 0.5); }

/// Halves away from zero.
int Rounded(double value) { return static_cast<int>(ZeTruncate(std::round(value))); }

} // namespace

void ZeGraphicsContext::ZeDrawImageToFit(ZeRect rect, const ZeGraphicsContext* source, ZeBitmap*)
{
    if (!context || !source) return;
    CGContextDrawImage(context, rect.GetCGRect(), CGBitmapContextCreateImage(source->context).get());
}

ZeBitmap* ZeGraphicsContext::ZeCreateSubBitmap(const ZeGraphicsContext* source, ZeRect& rect, ZeBitmap** whole)
{
    if (!context || !whole || !source) return nullptr;
    CGImage* const image = source->ZeCreateImageFromContext();
    if (!image) return nullptr;
    *whole = std::make_unique<ZeBitmap>(image, true).release();
    if (Nearest(rect.width) == 0) rect.width = static_cast<double>((*whole)->GetWidth());
    if (Nearest(rect.height) == 0) rect.height = static_cast<double>((*whole)->GetHeight());
    return (*whole)->ZeCreateSubBitmap(Rounded(rect.x), Rounded(rect.y), Rounded(rect.width), Rounded(rect.height));
}

void ZeGraphicsContext::ZeCopySubBitmap(ZePoint at, ZeBitmap* sub, const ZeRect& rect, ZeBitmap** whole)
{
    if (!context) return;
    if (sub)
        CGContextDrawImage(context, CGRectMake(Nearest(at.x), Nearest(at.y), Nearest(rect.width), Nearest(rect.height)),
                           sub->GetImage());
    if (!whole) return;
    if (*whole) ZeBitmap::ZeReleaseSubBitmap(&sub);
    ZeBitmap::ZeReleaseSubBitmap(whole);
}

void ZeGraphicsContext::ZeCopyBitmap(ZePoint at, const ZeGraphicsContext* source, ZeBitmap*, ZeRect rect)
{
    ZeBitmap* whole = nullptr;
    ZeBitmap* const sub = ZeCreateSubBitmap(source, rect, &whole);
    ZeCopySubBitmap(at, sub, rect, &whole);
}

void ZeGraphicsContext::ZeDrawImage1to1(ZeRect rect, const ZeGraphicsContext* source, ZeBitmap* bitmap)
{
    ZeCopyBitmap({rect.x, rect.y}, source, bitmap, rect);
}
