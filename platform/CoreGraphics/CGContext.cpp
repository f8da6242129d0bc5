#include "CoreGraphics/CGCairo.h"

#include <algorithm>
#include <cmath>

#include <sys/mman.h>

namespace {

constexpr std::size_t kManyBytes = std::size_t{1} << 18;
constexpr double kFlatness = 0.025; // pixels; Cairo's own 0.1 takes a 170th off a disc of radius 12

/// The transformation that applies `inner` first.
CGAffineTransform concatenated(const CGAffineTransform& outer, const CGAffineTransform& inner)
{
    return {outer.a * inner.a + outer.c * inner.b,
            outer.b * inner.a + outer.d * inner.b,
            outer.a * inner.c + outer.c * inner.d,
            outer.b * inner.c + outer.d * inner.d,
            outer.a * inner.tx + outer.c * inner.ty + outer.tx,
            outer.b * inner.tx + outer.d * inner.ty + outer.ty};
}

bool isFinite(const CGAffineTransform& t)
{
    return std::isfinite(t.a) && std::isfinite(t.b) && std::isfinite(t.c) && std::isfinite(t.d) &&
           std::isfinite(t.tx) && std::isfinite(t.ty);
}

void concatenate(CGContextRef context, const CGAffineTransform& inner)
{
    if (!context) return;
    const CGAffineTransform both = concatenated(context->state().current.ctm, inner);
    if (isFinite(both)) context->state().current.ctm = both;
}

RetainPtr<CGContext> contextOver(CairoSurface surface)
{
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    auto state = std::make_unique<CGContext::State>();
    state->surface = std::move(surface);
    state->cairo.reset(cairo_create(state->surface.get()));
    cairo_set_tolerance(state->cairo.get(), kFlatness);
    state->current.clip.size = {static_cast<CGFloat>(cairo_image_surface_get_width(state->surface.get())),
                                static_cast<CGFloat>(cairo_image_surface_get_height(state->surface.get()))};
    state->current.fill = state->current.stroke = CGColorCreateRGBA(0, 0, 0, 1);
    return RetainPtr<CGContext>::adopt(new CGContext(std::move(state)));
}

} // namespace

CGContext::CGContext(std::unique_ptr<State> state) : mState(std::move(state)) {}
CGContext::~CGContext() = default;

RetainPtr<CGContext> CGBitmapContextCreate(std::size_t width, std::size_t height)
{
    if (!CGIsImageSize(width, height)) return nullptr;
    const std::size_t size = 4 * width * height;
    if (size < kManyBytes)
        return contextOver(CairoSurface(
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height))));
    CGPages pages(size);
    auto context = CGBitmapContextCreate(pages.bytes(), width, height);
    if (context) context->state().pages = std::move(pages);
    return context;
}

CGPages::CGPages(std::size_t size)
{
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED) mBytes = {static_cast<std::uint8_t*>(memory), size};
}

CGPages::~CGPages()
{
    if (mBytes.data()) munmap(mBytes.data(), mBytes.size());
}

RetainPtr<CGContext> CGBitmapContextCreate(void* data, std::size_t width, std::size_t height)
{
    if (!data || !CGIsImageSize(width, height)) return nullptr;
    return contextOver(CairoSurface(cairo_image_surface_create_for_data(
        static_cast<std::uint8_t*>(data), CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height),
        static_cast<int>(4 * width))));
}

std::size_t CGBitmapContextGetWidth(CGContextRef context)
{
    return context ? static_cast<std::size_t>(cairo_image_surface_get_width(context->state().surface.get())) : 0;
}

std::size_t CGBitmapContextGetHeight(CGContextRef context)
{
    return context ? static_cast<std::size_t>(cairo_image_surface_get_height(context->state().surface.get())) : 0;
}

std::span<const std::uint8_t> CGBitmapContextGetPixels(CGContextRef context)
{
    if (!context) return {};
    cairo_surface_t* surface = context->state().surface.get();
    cairo_surface_flush(surface);
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface)); // always 4 * width
    return {cairo_image_surface_get_data(surface), stride * CGBitmapContextGetHeight(context)};
}

RetainPtr<CGImage> CGBitmapContextCreateImage(CGContextRef context)
{
    if (!context) return nullptr;
    const auto pixels = CGBitmapContextGetPixels(context);
    CGBlock copy = CGBlockOfBytes(pixels.size());
    if (!copy) return nullptr;
    std::copy(pixels.begin(), pixels.end(), copy.get());
    return CGImageCreateWithBlock(CGBitmapContextGetWidth(context), CGBitmapContextGetHeight(context), std::move(copy));
}

void CGContextSaveGState(CGContextRef context)
{
    if (!context) return;
    CGContext::State& state = context->state();
    state.saved.push_back(state.current);
    cairo_save(state.cairo.get());
}

void CGContextRestoreGState(CGContextRef context)
{
    if (!context || context->state().saved.empty()) return;
    CGContext::State& state = context->state();
    state.current = std::move(state.saved.back());
    state.saved.pop_back();
    cairo_restore(state.cairo.get());
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty) { concatenate(context, {1, 0, 0, 1, tx, ty}); }

void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy) { concatenate(context, {sx, 0, 0, sy, 0, 0}); }

CGAffineTransform CGContextGetCTM(CGContextRef context)
{
    return context ? context->state().current.ctm : CGAffineTransform{};
}

CGRect CGContextGetClipBoundingBox(CGContextRef context)
{
    if (!context || CGRectIsEmpty(context->state().current.clip)) return CGRectNull;
    const CGAffineTransform& t = context->state().current.ctm;
    const CGRect clip = CGRectOffset(context->state().current.clip, -t.tx, -t.ty);
    const CGFloat area = t.a * t.d - t.b * t.c;
    if (area == 0) return CGRectNull;
    const CGFloat left = CGRectGetMinX(clip), right = CGRectGetMaxX(clip), top = CGRectGetMinY(clip),
                  bottom = CGRectGetMaxY(clip);
    const auto x = [&](CGFloat fromLeft, CGFloat fromTop) { return (t.d * fromLeft - t.c * fromTop) / area; };
    const auto y = [&](CGFloat fromLeft, CGFloat fromTop) { return (t.a * fromTop - t.b * fromLeft) / area; };
    const auto [minX, maxX] = std::minmax({x(left, top), x(right, top), x(left, bottom), x(right, bottom)});
    const auto [minY, maxY] = std::minmax({y(left, top), y(right, top), y(left, bottom), y(right, bottom)});
    return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

void CGContextSetPatternPhase(CGContextRef context, CGSize phase)
{
    if (context && std::isfinite(phase.width) && std::isfinite(phase.height))
        context->state().current.patternPhase = phase;
}

void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color)
{
    if (context) context->state().current.fill = CGRetained(color);
}

void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color)
{
    if (context) context->state().current.stroke = CGRetained(color);
}

void CGContextSetLineWidth(CGContextRef context, CGFloat width)
{
    if (context && width >= 0 && std::isfinite(width)) context->state().current.lineWidth = width;
}

void CGContextSetLineCap(CGContextRef context, CGLineCap cap)
{
    static constexpr cairo_line_cap_t kCaps[] = {CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND, CAIRO_LINE_CAP_SQUARE};
    if (context) cairo_set_line_cap(context->state().cairo.get(), kCaps[cap]);
}

void CGContextSetLineJoin(CGContextRef context, CGLineJoin join)
{
    static constexpr cairo_line_join_t kJoins[] = {CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND, CAIRO_LINE_JOIN_BEVEL};
    if (context) cairo_set_line_join(context->state().cairo.get(), kJoins[join]);
}

void CGContextSetLineDash(CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count)
{
    if (!context) return;
    // anything that Cairo refuses would make the context unusable
    constexpr std::size_t kMost = 1024;
    CGFloat sum = 0;
    for (std::size_t i = 0; lengths && i < std::min(count, kMost); ++i)
        sum += lengths[i] >= 0 ? lengths[i] : std::nan("");
    const bool dashed = sum > 0 && std::isfinite(sum) && std::isfinite(phase);
    cairo_set_dash(context->state().cairo.get(), lengths, dashed ? static_cast<int>(std::min(count, kMost)) : 0,
                   dashed ? phase : 0);
}

void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode)
{
    static constexpr std::pair<CGBlendMode, cairo_operator_t> kOperators[] = {
        {kCGBlendModeNormal, CAIRO_OPERATOR_OVER},
        {kCGBlendModeDifference, CAIRO_OPERATOR_DIFFERENCE},
        {kCGBlendModeCopy, CAIRO_OPERATOR_SOURCE},
    };
    for (const auto& [known, op] : kOperators)
        if (context && mode == known) cairo_set_operator(context->state().cairo.get(), op);
}

void CGContextSetTextMatrix(CGContextRef context, CGAffineTransform matrix)
{
    if (context && isFinite(matrix)) context->state().textMatrix = matrix;
}

void CGContextSetTextPosition(CGContextRef context, CGFloat x, CGFloat y)
{
    CGAffineTransform matrix = CGContextGetTextMatrix(context);
    matrix.tx = x;
    matrix.ty = y;
    CGContextSetTextMatrix(context, matrix);
}

CGAffineTransform CGContextGetTextMatrix(CGContextRef context)
{
    return context ? context->state().textMatrix : CGAffineTransform{};
}

void CGContextSetShouldAntialias(CGContextRef context, bool antialias)
{
    if (context)
        cairo_set_antialias(context->state().cairo.get(), antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
}

void CGContextSetAlpha(CGContextRef context, CGFloat alpha)
{
    if (context) context->state().current.alpha = CGUnitValue(alpha);
}
