// Bitmaps whose owner wants the alpha byte first. Cairo can't draw such pixels: it draws into a bitmap of its own, and
// the owner's bytes are brought up to date when they are asked for.

#include "CoreGraphics/CGCairo.h"

#include <algorithm>

RetainPtr<CGContext> CGBitmapContextCreate(void* data, std::size_t width, std::size_t height, CGImageAlphaInfo alpha)
{
    if (alpha == kCGImageAlphaPremultipliedLast) return CGBitmapContextCreate(data, width, height);
    if (!data || alpha != kCGImageAlphaPremultipliedFirst) return nullptr;
    auto context = CGBitmapContextCreate(width, height);
    if (!context) return nullptr;
    const auto* from = static_cast<const std::uint8_t*>(data);
    cairo_surface_t* surface = context->state().surface.get();
    std::uint8_t* to = cairo_image_surface_get_data(surface);
    for (std::size_t left = width * height; left > 0; --left, from += 4, to += 4)
        std::rotate_copy(from, from + 1, from + 4, to);
    cairo_surface_mark_dirty(surface);
    context->state().alphaFirst = static_cast<std::uint8_t*>(data);
    return context;
}

void* CGBitmapContextGetData(CGContextRef context)
{
    const auto pixels = CGBitmapContextGetPixels(context);
    if (!context) return nullptr;
    std::uint8_t* to = context->state().alphaFirst;
    if (!to) return cairo_image_surface_get_data(context->state().surface.get());
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        std::rotate_copy(&pixels[i], &pixels[i] + 3, &pixels[i] + 4, to + i);
    return to;
}
