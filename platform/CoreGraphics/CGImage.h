#pragma once

/// Pictures of premultiplied R, G, B, A bytes. A picture never changes. Size 0 and no pixels for null.

#include "CoreGraphics/CGDataProvider.h"
#include "CoreGraphics/CGGeometry.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

class CGImage final : public NSObject {
public:
    struct Contents; // complete inside this folder only
    explicit CGImage(std::unique_ptr<const Contents> contents);
    const Contents& contents() const { return *mContents; }

private:
    ~CGImage() override;

    std::unique_ptr<const Contents> mContents;
};
using CGImageRef = const CGImage*;

/// A picture of the provider's bytes, which it draws from and doesn't copy: the first pixel first, rows `bytesPerRow`
/// apart. Null where a side is 0 or above 32767, `bytesPerRow` is below 4 * width, above 131068 or no multiple of 4, or
/// the provider is null or has fewer bytes than that.
RetainPtr<CGImage> CGImageCreate(std::size_t width, std::size_t height, std::size_t bytesPerRow,
                                 CGDataProviderRef provider);
/// The picture in a PNG file; null when it can't be read, is cut short, has a side over 32767 or more than 2^26 pixels.
///
/// Every kind of PNG is taken (palette, grey, 16 bits, interlaced). Colours are premultiplied with rounding: red 200 at
/// alpha 128 is read as 100.
RetainPtr<CGImage> CGImageCreateWithPNGDataProvider(CGDataProviderRef provider);
/// The picture in a JPEG file, with the same limits: grey, colour or four inks, sequential or progressive. Null, too,
/// where pixels are damaged, the file is too short for its size, or it has more than 100 scans.
RetainPtr<CGImage> CGImageCreateWithJPEGDataProvider(CGDataProviderRef provider);
RetainPtr<CGImage> CGImageCreateWithPNGFile(const std::string& path);
/// The pixels that `rect` touches, where the image has them: a picture that shares its bytes and outlives it. Null
/// where that is none.
RetainPtr<CGImage> CGImageCreateWithImageInRect(CGImageRef image, CGRect rect);

/// @return success; the file is written beside its final name first, so that no half file appears, and devices and
/// pipes as they are
bool CGImageWritePNGFile(CGImageRef image, const std::string& path);
std::size_t CGImageGetWidth(CGImageRef image);
std::size_t CGImageGetHeight(CGImageRef image);
std::size_t CGImageGetBytesPerRow(CGImageRef image); ///< 4 * width; more where the picture was cut out of a wider one
bool CGImageIsOpaque(CGImageRef image); ///< no pixel lets anything through; only known of what comes from a file
/// Tells pictures apart, even from those that have ended: no two in a process have the same. 0 for null.
std::uint64_t CGImageGetSerialNumber(CGImageRef image);
/// From the first pixel to the last, the top row first.
std::span<const std::uint8_t> CGImageGetPixels(CGImageRef image);
/// For an image that a call hands over by contract; `RetainPtr` is the better way to hold one. Null is allowed.
inline void CGImageRelease(CGImageRef image) { NSReference::release(image); }
