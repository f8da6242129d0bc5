#include "CoreGraphics/CGCairo.h"

#include <cmath>

namespace {

/// A picture of bytes that `provider` is known to have.
RetainPtr<CGImage> imageOf(std::size_t width, std::size_t height, std::size_t bytesPerRow,
                           const std::uint8_t* firstPixel, RetainPtr<CGDataProvider> provider, bool isOpaque)
{
    CairoSurface surface(cairo_image_surface_create_for_data(
        const_cast<std::uint8_t*>(firstPixel), isOpaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32,
        static_cast<int>(width), static_cast<int>(height), static_cast<int>(bytesPerRow)));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    auto contents = std::make_unique<CGImage::Contents>();
    static std::uint64_t lastSerialNumber = 0;
    *contents = {
        width, height, bytesPerRow, firstPixel, std::move(provider), isOpaque, std::move(surface), ++lastSerialNumber};
    return RetainPtr<CGImage>::adopt(new CGImage(std::move(contents)));
}

} // namespace

CGImage::CGImage(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CGImage::~CGImage() = default;

RetainPtr<CGImage> CGImageCreate(std::size_t width, std::size_t height, std::size_t bytesPerRow,
                                 CGDataProviderRef provider)
{
    if (!provider || !CGIsImageSize(width, height)) return nullptr;
    if (bytesPerRow < 4 * width || bytesPerRow > 4 * kCGMaxSide || bytesPerRow % 4 != 0) return nullptr;
    const std::span<const std::uint8_t> bytes = provider->bytes();
    if (bytes.size() < bytesPerRow * (height - 1) + 4 * width) return nullptr;
    return imageOf(width, height, bytesPerRow, bytes.data(), CGRetained(provider), false);
}

RetainPtr<CGImage> CGImageCreateWithBlock(std::size_t width, std::size_t height, CGBlock pixels, bool isOpaque)
{
    auto provider = CGDataProviderCreateWithBlock(std::move(pixels), 4 * width * height);
    if (!provider || !CGIsImageSize(width, height)) return nullptr;
    const std::uint8_t* const firstPixel = provider->bytes().data();
    return imageOf(width, height, 4 * width, firstPixel, std::move(provider), isOpaque);
}

RetainPtr<CGImage> CGImageCreateWithImageInRect(CGImageRef image, CGRect rect)
{
    if (!image || !CGIsFinite(rect)) return nullptr;
    const CGImage::Contents& whole = image->contents();
    const CGRect part = CGRectIntersection(
        rect, CGRectMake(0, 0, static_cast<CGFloat>(whole.width), static_cast<CGFloat>(whole.height)));
    if (CGRectIsEmpty(part)) return nullptr;
    const auto left = static_cast<std::size_t>(part.origin.x), top = static_cast<std::size_t>(part.origin.y);
    const auto right = static_cast<std::size_t>(std::ceil(CGRectGetMaxX(part)));
    const auto bottom = static_cast<std::size_t>(std::ceil(CGRectGetMaxY(part)));
    return imageOf(std::min(right, whole.width) - left, std::min(bottom, whole.height) - top, whole.bytesPerRow,
                   whole.firstPixel + top * whole.bytesPerRow + 4 * left, whole.provider, whole.isOpaque);
}

std::size_t CGImageGetWidth(CGImageRef image) { return image ? image->contents().width : 0; }

std::size_t CGImageGetHeight(CGImageRef image) { return image ? image->contents().height : 0; }

std::size_t CGImageGetBytesPerRow(CGImageRef image) { return image ? image->contents().bytesPerRow : 0; }

bool CGImageIsOpaque(CGImageRef image) { return image && image->contents().isOpaque; }

std::uint64_t CGImageGetSerialNumber(CGImageRef image) { return image ? image->contents().serialNumber : 0; }

std::span<const std::uint8_t> CGImageGetPixels(CGImageRef image)
{
    if (!image) return {};
    const CGImage::Contents& contents = image->contents();
    return {contents.firstPixel, contents.bytesPerRow * (contents.height - 1) + 4 * contents.width};
}
