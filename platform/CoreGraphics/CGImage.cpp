#include "CoreGraphics/CGCairo.h"

CGImage::CGImage(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CGImage::~CGImage() = default;

CGImage::Contents::Contents(std::size_t imageWidth, std::size_t imageHeight, std::vector<std::uint8_t> bytes)
    : width(imageWidth),
      height(imageHeight),
      pixels(std::move(bytes)),
      surface(cairo_image_surface_create_for_data(pixels.data(), CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                                  static_cast<int>(height), static_cast<int>(4 * width)))
{
}

std::size_t CGImageGetWidth(CGImageRef image) { return image ? image->contents().width : 0; }

std::size_t CGImageGetHeight(CGImageRef image) { return image ? image->contents().height : 0; }

std::span<const std::uint8_t> CGImageGetPixels(CGImageRef image)
{
    if (!image) return {};
    return image->contents().pixels;
}
