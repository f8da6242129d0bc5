// Everything that changes pixels or the clip.

#include "CoreGraphics/CGCairo.h"
#include "CoreGraphics/CGContextPrivate.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kWidestLine = 1 << 16; // device pixels

CGFloat determinant(const CGAffineTransform& t) { return t.a * t.d - t.b * t.c; }

/// Whether the transformation has an inverse that Cairo can work with.
bool isDrawable(const CGAffineTransform& t)
{
    const CGFloat area = std::abs(determinant(t));
    return area > 1e-9 && area < 1e12 && std::abs(t.tx) < 1e9 && std::abs(t.ty) < 1e9;
}

cairo_matrix_t cairoMatrix(const CGAffineTransform& t) { return {t.a, t.b, t.c, t.d, t.tx, t.ty}; }

/// Where a rectangle lies, if it is one on the device too; what is far beyond any bitmap is left out.
std::optional<CGRect> rectOnDevice(const CGAffineTransform& t, CGRect rect)
{
    constexpr CGFloat kFar = 1 << 24;
    if (t.b != 0 || t.c != 0 || !CGIsFinite(rect)) return std::nullopt;
    const auto [left, right] = std::minmax({std::clamp(CGRectGetMinX(rect) * t.a + t.tx, -kFar, kFar),
                                            std::clamp(CGRectGetMaxX(rect) * t.a + t.tx, -kFar, kFar)});
    const auto [top, bottom] = std::minmax({std::clamp(CGRectGetMinY(rect) * t.d + t.ty, -kFar, kFar),
                                            std::clamp(CGRectGetMaxY(rect) * t.d + t.ty, -kFar, kFar)});
    return CGRectMake(left, top, right - left, bottom - top);
}

/// All pixels that a rectangle touches.
CGRect pixelsAround(CGRect rect)
{
    const CGFloat left = std::floor(CGRectGetMinX(rect)), top = std::floor(CGRectGetMinY(rect));
    return CGRectMake(left, top, std::ceil(CGRectGetMaxX(rect)) - left, std::ceil(CGRectGetMaxY(rect)) - top);
}

/// Whether each image pixel covers a whole number of device pixels, so that none needs to be mixed.
bool keepsPixelsWhole(const cairo_matrix_t& deviceFromImage)
{
    const cairo_matrix_t& m = deviceFromImage;
    return m.xy == 0 && m.yx == 0 && m.xx >= 0.5 && m.yy >= 0.5 && CGIsWhole(m.xx) && CGIsWhole(m.yy) &&
           CGIsWhole(m.x0) && CGIsWhole(m.y0);
}

/// Makes `image` the source; `deviceFromImage` puts its pixels on the device.
/// @return false where the picture is too small or too large to be seen
bool setImageSource(cairo_t* cairo, CGImageRef image, const cairo_matrix_t& deviceFromImage, cairo_extend_t extend,
                    bool sharp)
{
    cairo_matrix_t imageFromDevice = deviceFromImage;
    if (!isDrawable({deviceFromImage.xx, deviceFromImage.yx, deviceFromImage.xy, deviceFromImage.yy, deviceFromImage.x0,
                     deviceFromImage.y0}) ||
        cairo_matrix_invert(&imageFromDevice) != CAIRO_STATUS_SUCCESS)
        return false;
    const CairoPattern pattern(cairo_pattern_create_for_surface(image->contents().surface.get()));
    cairo_pattern_set_matrix(pattern.get(), &imageFromDevice);
    cairo_pattern_set_extend(pattern.get(), extend);
    cairo_pattern_set_filter(pattern.get(), sharp ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    cairo_identity_matrix(cairo);
    cairo_set_source(cairo, pattern.get());
    cairo_set_matrix(cairo, &matrix);
    return true;
}

/// A pattern follows the scale of the transformation, but starts at the phase, so that neighbouring views match.
bool setPatternSource(cairo_t* cairo, const CGColor::Contents& color, const CGContext::State::GState& state)
{
    cairo_matrix_t placed = cairoMatrix(state.ctm);
    placed.x0 = state.patternPhase.width;
    placed.y0 = state.patternPhase.height;
    cairo_matrix_scale(&placed, 1 / color.patternScale, 1 / color.patternScale);
    return setImageSource(cairo, color.pattern, placed, CAIRO_EXTEND_REPEAT, keepsPixelsWhole(placed));
}

void setPlainSource(cairo_t* cairo, const std::array<CGFloat, 4>& rgba, CGFloat alpha)
{
    cairo_set_source_rgba(cairo, rgba[2], rgba[1], rgba[0], rgba[3] * alpha);
}

/// Gives the source that is set the alpha that a pattern has no place for.
void fadeSource(cairo_t* cairo, CGFloat alpha)
{
    cairo_push_group(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_OVER);
    cairo_paint_with_alpha(cairo, alpha);
    cairo_pop_group_to_source(cairo);
}

/// Draws in a colour of any kind.
template <typename Draw>
void drawInColor(cairo_t* cairo, CGColorRef color, const CGContext::State::GState& state, Draw&& draw)
{
    if (!color) return;
    const CGColor::Contents& contents = color->contents();
    if (!contents.pattern) {
        setPlainSource(cairo, contents.components, state.alpha);
        draw();
        return;
    }
    if (!setPatternSource(cairo, contents, state)) return;
    if (state.alpha < 1) fadeSource(cairo, state.alpha);
    draw();
}

void fillElements(CGContextRef context, const CGPathElements& elements, CGColorRef color,
                  cairo_fill_rule_t rule = CAIRO_FILL_RULE_WINDING)
{
    const CGDrawing drawing(context);
    if (!drawing) return;
    drawInColor(drawing.cairo(), color, context->state().current, [&] {
        cairo_set_fill_rule(drawing.cairo(), rule);
        CGReplay(drawing.cairo(), elements);
        cairo_fill(drawing.cairo());
    });
}

void strokeElements(CGContextRef context, const CGPathElements& elements)
{
    const CGDrawing drawing(context);
    if (!drawing) return;
    const CGContext::State::GState& state = context->state().current;
    drawInColor(drawing.cairo(), state.stroke, state, [&] {
        const CGFloat widest = kWidestLine / std::sqrt(std::abs(determinant(state.ctm)));
        cairo_set_line_width(drawing.cairo(), std::min(state.lineWidth, widest));
        CGReplay(drawing.cairo(), elements);
        cairo_stroke(drawing.cairo());
    });
}

void clipToElements(CGContextRef context, const CGPathElements& elements)
{
    context->state().current.clipIsRect = false;
    cairo_t* cairo = context->state().cairo.get();
    CGReplay(cairo, elements);
    cairo_clip(cairo);
}

/// Leaves the strip between the perpendiculars of two points. Where a mode replaces what is there, the nothing beyond a
/// gradient would replace it too.
void clipToStrip(cairo_t* cairo, CGPoint start, CGPoint end)
{
    constexpr CGFloat kFarther = 1 << 20;
    const CGFloat dx = end.x - start.x, dy = end.y - start.y;
    const CGFloat far = kFarther / std::hypot(dx, dy);
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE); // the strip ends as the gradient does
    cairo_new_path(cairo);
    cairo_move_to(cairo, start.x - dy * far, start.y + dx * far);
    cairo_line_to(cairo, start.x + dy * far, start.y - dx * far);
    cairo_line_to(cairo, end.x + dy * far, end.y - dx * far);
    cairo_line_to(cairo, end.x - dy * far, end.y + dx * far);
    cairo_clip(cairo);
}

} // namespace

CGDrawing::CGDrawing(CGContextRef context)
{
    if (!context || !isDrawable(context->state().current.ctm)) return;
    mCairo = context->state().cairo.get();
    cairo_save(mCairo);
    const cairo_matrix_t matrix = cairoMatrix(context->state().current.ctm);
    cairo_set_matrix(mCairo, &matrix);
}

CGDrawing::~CGDrawing()
{
    if (!mCairo) return;
    cairo_new_path(mCairo);
    cairo_restore(mCairo);
}

void CGContextDrawInColor(CGContextRef context, CGColorRef color, const std::function<void(_cairo*)>& draw)
{
    const CGDrawing drawing(context);
    if (drawing) drawInColor(drawing.cairo(), color, context->state().current, [&] { draw(drawing.cairo()); });
}

void CGContextFillPath(CGContextRef context)
{
    if (!context) return;
    fillElements(context, std::exchange(context->state().path, {}), context->state().current.fill);
}

void CGContextStrokePath(CGContextRef context)
{
    if (context) strokeElements(context, std::exchange(context->state().path, {}));
}

void CGContextStrokeLineSegments(CGContextRef context, const CGPoint* points, std::size_t count)
{
    if (context && points) strokeElements(context, CGElementsOfSegments(context->state().current.ctm, {points, count}));
}

void CGContextStrokeRect(CGContextRef context, CGRect rect)
{
    if (context) strokeElements(context, CGElementsOfRect(context->state().current.ctm, rect));
}

void CGContextClip(CGContextRef context)
{
    if (context) clipToElements(context, std::exchange(context->state().path, {}));
}

void CGContextClipToRect(CGContextRef context, CGRect rect)
{
    if (!context || !CGIsFinite(rect)) return;
    CGContext::State::GState& state = context->state().current;
    const std::optional<CGRect> pixels = rectOnDevice(state.ctm, rect);
    if (pixels && CGRectContainsRect(CGRectInset(*pixels, -kCGSamePlace, -kCGSamePlace), state.clip)) return;
    const bool staysRect = state.clipIsRect && pixels && CGIsOnWholePixels(*pixels);
    clipToElements(context, CGElementsOfRect(state.ctm, rect));
    if (pixels) state.clip = CGRectIntersection(state.clip, staysRect ? *pixels : pixelsAround(*pixels));
    state.clipIsRect = staysRect;
}

void CGContextClipToRects(CGContextRef context, std::span<const CGRect> rects)
{
    if (rects.size() == 1 && CGIsFinite(rects.front())) return CGContextClipToRect(context, rects.front());
    if (context) clipToElements(context, CGElementsOfRects(context->state().current.ctm, rects));
}

void CGContextFillRect(CGContextRef context, CGRect rect)
{
    if (!context) return;
    const CGContext::State::GState& state = context->state().current;
    const std::optional<CGRect> pixels = rectOnDevice(state.ctm, rect);
    if (pixels && CGFillWholePixels(context, *pixels)) return;
    fillElements(context, CGElementsOfRect(state.ctm, rect), state.fill);
}

void CGContextFillCoverage(CGContextRef context, CGPoint devicePixel, const CGCoverage& coverage)
{
    const CGDrawing drawing(context);
    if (!drawing || !coverage.bytes || !CGIsImageSize(coverage.width, coverage.height)) return;
    const CairoSurface mask(cairo_image_surface_create_for_data(
        const_cast<std::uint8_t*>(coverage.bytes), CAIRO_FORMAT_A8, static_cast<int>(coverage.width),
        static_cast<int>(coverage.height), static_cast<int>(coverage.bytesPerRow)));
    const CGContext::State::GState& state = context->state().current;
    drawInColor(drawing.cairo(), state.fill, state, [&] {
        cairo_identity_matrix(drawing.cairo());
        cairo_mask_surface(drawing.cairo(), mask.get(), devicePixel.x, devicePixel.y);
    });
}

void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width)
{
    if (!context || !(width > 0)) return;
    const CGContext::State::GState& state = context->state().current;
    const CGRect edges[] = {rect, CGRectInset(rect, width, width)};
    const auto frame = std::span(edges).first(CGRectIsEmpty(edges[1]) ? 1 : 2);
    fillElements(context, CGElementsOfRects(state.ctm, frame), state.stroke, CAIRO_FILL_RULE_EVEN_ODD);
}

void CGContextClearRect(CGContextRef context, CGRect rect)
{
    const CGDrawing drawing(context);
    if (!drawing) return;
    cairo_set_operator(drawing.cairo(), CAIRO_OPERATOR_CLEAR);
    CGReplay(drawing.cairo(), CGElementsOfRect(context->state().current.ctm, rect));
    cairo_fill(drawing.cairo());
}

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    if (!context || !image || CGRectIsEmpty(rect) || !CGIsFinite(rect)) return;
    const CGContext::State::GState& state = context->state().current;
    cairo_matrix_t placed = cairoMatrix(state.ctm);
    cairo_matrix_translate(&placed, rect.origin.x, rect.origin.y);
    cairo_matrix_scale(&placed, rect.size.width / static_cast<CGFloat>(CGImageGetWidth(image)),
                       rect.size.height / static_cast<CGFloat>(CGImageGetHeight(image)));
    const bool oneToOne = keepsPixelsWhole(placed) && std::round(placed.xx) == 1 && std::round(placed.yy) == 1;
    if (oneToOne && CGDrawWholePixels(context, image, {placed.x0, placed.y0})) return;
    const CGDrawing drawing(context);
    if (!drawing) return;
    const bool endsWithItself = oneToOne && cairo_get_operator(drawing.cairo()) == CAIRO_OPERATOR_OVER;
    // the edge pixels extend outward, else they would be mixed with the nothing around the image
    const cairo_extend_t extend = endsWithItself ? CAIRO_EXTEND_NONE : CAIRO_EXTEND_PAD;
    if (!setImageSource(drawing.cairo(), image, placed, extend, oneToOne)) return;
    if (!endsWithItself) {
        CGReplay(drawing.cairo(), CGElementsOfRect(state.ctm, rect));
        cairo_clip(drawing.cairo());
    }
    cairo_paint_with_alpha(drawing.cairo(), state.alpha);
}

void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start, CGPoint end)
{
    const CGDrawing drawing(context);
    if (!drawing || !gradient || start == end || !CGIsFinite({start, {end.x - start.x, end.y - start.y}})) return;
    const CairoPattern pattern(cairo_pattern_create_linear(start.x, start.y, end.x, end.y));
    for (const auto& [location, rgba] : gradient->contents().stops)
        cairo_pattern_add_color_stop_rgba(pattern.get(), location, rgba[2], rgba[1], rgba[0],
                                          rgba[3] * context->state().current.alpha);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_NONE);
    if (cairo_get_operator(drawing.cairo()) != CAIRO_OPERATOR_OVER) clipToStrip(drawing.cairo(), start, end);
    cairo_set_source(drawing.cairo(), pattern.get());
    cairo_paint(drawing.cairo());
}
