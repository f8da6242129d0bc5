#include "AppKit/NSGraphicsContext.h"

#include <cmath>
#include <utility>

namespace {

RetainPtr<CGContext>& TheCurrent()
{
    static RetainPtr<CGContext> current;
    return current;
}

} // namespace

NSGraphicsContext::Scope::Scope(CGContextRef context) : mPrevious(std::exchange(TheCurrent(), context)) {}
NSGraphicsContext::Scope::~Scope() { std::swap(TheCurrent(), mPrevious); }

CGContextRef NSGraphicsContext::currentContext() { return TheCurrent(); }

CGFloat NSGraphicsContext::currentScale()
{
    const CGContextRef context = currentContext();
    if (!context) return 1;
    const CGAffineTransform matrix = CGContextGetCTM(context);
    return std::hypot(matrix.a, matrix.b);
}

void NSRectFill(NSRect rect) { CGContextFillRect(NSGraphicsContext::currentContext(), rect); }

bool NSStandsOnPixels(CGContextRef context, NSRect rect)
{
    const CGAffineTransform ctm = CGContextGetCTM(context);
    const auto isWhole = [](CGFloat value) { return std::abs(value - std::round(value)) < 1.0 / 512; };
    return ctm.b == 0 && ctm.c == 0 && isWhole(rect.origin.x * ctm.a + ctm.tx) &&
           isWhole(CGRectGetMaxX(rect) * ctm.a + ctm.tx) && isWhole(rect.origin.y * ctm.d + ctm.ty) &&
           isWhole(CGRectGetMaxY(rect) * ctm.d + ctm.ty);
}
