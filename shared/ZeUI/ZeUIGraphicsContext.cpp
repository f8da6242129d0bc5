#include "ZeUIGraphicsContext.h"

#include "ZeUIColor.h"

#include <array>
#include <memory>
#include <new>

namespace {

constexpr double kThin = 1.0;

struct Segment {
    ZeFPoint from, to;
};

CGRect WholeOf(CGImageRef image)
{
    return CGRectMake(0, 0, static_cast<CGFloat>(CGImageGetWidth(image)),
                      static_cast<CGFloat>(CGImageGetHeight(image)));
}

} // namespace

ZeGraphicsContext::ZeGraphicsContext(CGImageRef image, bool drawImage)
{
    const std::size_t width = CGImageGetWidth(image), height = CGImageGetHeight(image);
    std::unique_ptr<std::uint8_t[]> pixels(new (std::nothrow) std::uint8_t[4 * width * height]());
    context = CGBitmapContextCreate(pixels.get(), width, height, kCGImageAlphaPremultipliedFirst).leak();
    if (!context) return;
    static_cast<void>(pixels.release());
    ownsContext = true;
    if (drawImage) CGContextDrawImage(context, WholeOf(image), image);
}

void ZeGraphicsContext::ZeCleanupGraphicsContext()
{
    if (ownsContext) {
        const std::unique_ptr<std::uint8_t[]> pixels(static_cast<std::uint8_t*>(CGBitmapContextGetData(context)));
        RetainPtr<CGContext>::adopt(context).reset();
        context = nullptr;
    }
    ownsContext = false;
}

CGImage* ZeGraphicsContext::ZeCreateImageFromContext() const { return CGBitmapContextCreateImage(context).leak(); }

void ZeGraphicsContext::ZeImageRelease(CGImage** image) const
{
    if (context && image) CGImageRelease(std::exchange(*image, nullptr));
}

void ZeGraphicsContext::ZeSetLineStyle(double phase, const double* lengths, unsigned long count)
{
    const bool solid = !lengths || count == 0;
    CGContextSetLineDash(context, phase, solid ? nullptr : lengths, solid ? 0 : count);
}

void ZeGraphicsContext::setStroke(ZeGuiDefs::Color color, double lineWidth)
{
    CGContextSetStrokeColorWithColor(context, ZeColorFromWord(color).get());
    CGContextSetLineWidth(context, lineWidth);
}

void ZeGraphicsContext::setFill(ZeGuiDefs::Color color)
{
    CGContextSetFillColorWithColor(context, ZeColorFromWord(color).get());
}

void ZeGraphicsContext::ZeFillRectSolid(ZeGuiDefs::Color color, ZeRect rect)
{
    setFill(color);
    CGContextFillRect(context, rect.GetCGRect());
}

void ZeGraphicsContext::ZeFillRectGradient(ZeGuiDefs::Color first, ZeGuiDefs::Color second, ZeRect rect)
{
    static constexpr CGFloat kEnds[] = {0, 1};
    const auto from = ZeColorFromWord(first), to = ZeColorFromWord(second);
    const CGColorRef colors[] = {from, to};
    const auto gradient = CGGradientCreate(colors, kEnds);
    CGContextDrawLinearGradient(context, gradient, {rect.x, rect.y}, {rect.x + rect.width, rect.y + rect.height});
}

void ZeGraphicsContext::ZeDrawRectangle(ZeGuiDefs::Color color, ZeRect rect, double lineWidth)
{
    setStroke(color, lineWidth);
    CGContextStrokeRect(context, CGRectMake(rect.x + lineWidth / 2 + 0.5, rect.y + lineWidth / 2 + 0.5,
                                            rect.width - (lineWidth + 0.5), rect.height - (lineWidth + 0.5)));
}

void ZeGraphicsContext::strokeSegment(ZeFPoint from, ZeFPoint to)
{
    const CGPoint ends[] = {{from.x, from.y}, {to.x, to.y}};
    CGContextStrokeLineSegments(context, ends, std::size(ends));
}

void ZeGraphicsContext::ZeDrawLine(ZeGuiDefs::Color color, double x1, double y1, double x2, double y2)
{
    setStroke(color, kThin);
    strokeSegment({x1, y1}, {x2, y2});
}

void ZeGraphicsContext::ZeDrawLine(ZeGuiDefs::Color color, int x1, int y1, int x2, int y2)
{
    ZeDrawLine(color, static_cast<double>(x1), static_cast<double>(y1), static_cast<double>(x2),
               static_cast<double>(y2));
}

void ZeGraphicsContext::ZeDrawLine(ZeGuiDefs::Color color, double a, double b, double c, _eGCDL layout)
{
    const std::array<Segment, 6> segments{{
        {{a, c}, {b, c}},     // eGCDLHorz
        {{a, c}, {a + b, c}}, // eGCDLHorzLen
        {{a, b}, {a + c, b}}, // eGCDLHorzXYLen
        {{c, a}, {c, b}},     // eGCDLVert
        {{c, a}, {c, a + b}}, // eGCDLVertLen
        {{a, b}, {a, b + c}}, // eGCDLVertXYLen
    }};
    const auto row = static_cast<unsigned>(layout);
    if (row >= segments.size()) return;
    setStroke(color, kThin);
    strokeSegment(segments[row].from, segments[row].to);
}

void ZeGraphicsContext::ZeDrawLine(ZeGuiDefs::Color color, int a, int b, int c, _eGCDL layout)
{
    ZeDrawLine(color, static_cast<double>(a), static_cast<double>(b), static_cast<double>(c), layout);
}

void ZeGraphicsContext::ZeDrawXorLine(int x1, int y1, int x2, int y2)
{
    const auto center = [](int pixel) { return static_cast<double>(static_cast<float>(pixel) + 0.5F); };
    setStroke(0xFFFFFFFF, kThin);
    CGContextSetBlendMode(context, kCGBlendModeDifference);
    strokeSegment({center(x1), center(y1)}, {center(x2), center(y2)});
    CGContextSetBlendMode(context, kCGBlendModeCopy);
}
