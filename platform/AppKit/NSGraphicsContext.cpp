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
