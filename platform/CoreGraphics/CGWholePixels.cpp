#include "CoreGraphics/CGCairo.h"

#include <pixman.h>

namespace {

using PixmanImage = std::unique_ptr<pixman_image_t, Releaser<pixman_image_unref>>;

struct Pixels {
    int x, y, width, height;
};

Pixels pixelsOf(CGRect rect)
{
    const auto whole = [](CGFloat value) { return static_cast<int>(std::round(value)); };
    return {whole(rect.origin.x), whole(rect.origin.y), whole(rect.size.width), whole(rect.size.height)};
}

/// Whether what is drawn is laid over what is there, within whole pixels and with no alpha but its own.
bool laysOver(const CGContext::State& state)
{
    return state.current.clipIsRect && !(state.current.alpha < 1) &&
           cairo_get_operator(state.cairo.get()) == CAIRO_OPERATOR_OVER;
}

bool isAligned(const void* pixels, std::size_t bytesPerRow)
{
    return (reinterpret_cast<std::uintptr_t>(pixels) | bytesPerRow) % alignof(std::uint32_t) == 0;
}

/// The context's pixels for somebody else to write.
class Borrowed {
public:
    explicit Borrowed(const CGContext::State& state) : mSurface(state.surface.get()) { cairo_surface_flush(mSurface); }
    ~Borrowed() { cairo_surface_mark_dirty(mSurface); }
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;

    std::uint32_t* pixels() const { return reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(mSurface)); }
    int width() const { return cairo_image_surface_get_width(mSurface); }
    int height() const { return cairo_image_surface_get_height(mSurface); }
    int stride() const { return cairo_image_surface_get_stride(mSurface); }

private:
    cairo_surface_t* mSurface;
};

/// Cairo's pixel of an opaque colour.
std::uint32_t pixelOf(const std::array<CGFloat, 4>& rgba)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(std::lround(rgba[i] * 65535)) >> 8; };
    return 0xFF000000U | byte(2) << 16 | byte(1) << 8 | byte(0);
}

} // namespace

bool CGIsOnWholePixels(CGRect pixels)
{
    return CGIsWhole(CGRectGetMinX(pixels)) && CGIsWhole(CGRectGetMinY(pixels)) && CGIsWhole(CGRectGetMaxX(pixels)) &&
           CGIsWhole(CGRectGetMaxY(pixels));
}

bool CGFillWholePixels(CGContextRef context, CGRect pixels)
{
    const CGContext::State& state = context->state();
    const CGColorRef color = state.current.fill;
    const bool isOpaque = color && !color->contents().pattern && color->contents().components[3] == 1;
    if (!laysOver(state) || !isOpaque || !CGIsOnWholePixels(pixels)) return false;
    const Borrowed to(state);
    if (!isAligned(to.pixels(), 0)) return false;
    const CGRect part = CGRectIntersection(pixels, state.current.clip);
    if (CGRectIsEmpty(part)) return true;
    const auto [x, y, width, height] = pixelsOf(part);
    return pixman_fill(to.pixels(), to.stride() / 4, 32, x, y, width, height, pixelOf(color->contents().components));
}

bool CGDrawWholePixels(CGContextRef context, CGImageRef image, CGPoint place)
{
    const CGContext::State& state = context->state();
    const CGImage::Contents& from = image->contents();
    if (!laysOver(state) || !isAligned(from.firstPixel, from.bytesPerRow)) return false;
    const Borrowed to(state);
    if (!isAligned(to.pixels(), 0)) return false;
    const CGSize size{static_cast<CGFloat>(from.width), static_cast<CGFloat>(from.height)};
    const CGRect part = CGRectIntersection({place, size}, state.current.clip);
    if (CGRectIsEmpty(part)) return true;
    const auto image32 = [](int width, int height, std::uint32_t* pixels, int stride) {
        return PixmanImage(pixman_image_create_bits_no_clear(PIXMAN_a8r8g8b8, width, height, pixels, stride));
    };
    // pixman's sources are only read
    auto* const source = reinterpret_cast<std::uint32_t*>(const_cast<std::uint8_t*>(from.firstPixel));
    const auto picture = image32(static_cast<int>(from.width), static_cast<int>(from.height), source,
                                 static_cast<int>(from.bytesPerRow));
    const auto ground = image32(to.width(), to.height(), to.pixels(), to.stride());
    if (!picture || !ground) return false;
    const auto [x, y, width, height] = pixelsOf(part);
    const int left = static_cast<int>(std::round(place.x)), top = static_cast<int>(std::round(place.y));
    pixman_image_composite32(from.isOpaque ? PIXMAN_OP_SRC : PIXMAN_OP_OVER, picture.get(), nullptr, ground.get(),
                             x - left, y - top, 0, 0, x, y, width, height);
    return true;
}
