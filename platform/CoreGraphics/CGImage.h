#pragma once

/// Pictures of premultiplied R, G, B, A bytes. A picture never changes. Size 0 and no pixels for null.

#include "Foundation/NSObject.h"

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

/// A picture read from a PNG file; null when it can't be read, is cut short, or has a side over 32767.
///
/// Every kind of PNG is taken (palette, grey, 16 bits, interlaced). Colours are premultiplied with rounding: red 200 at
/// alpha 128 is read as 100.
RetainPtr<CGImage> CGImageCreateWithPNGFile(const std::string& path);
/// @return success; the file is written beside its final name first, so that no half file appears
bool CGImageWritePNGFile(CGImageRef image, const std::string& path);
std::size_t CGImageGetWidth(CGImageRef image);
std::size_t CGImageGetHeight(CGImageRef image);
/// Rows of 4 * width bytes, the top one first.
std::span<const std::uint8_t> CGImageGetPixels(CGImageRef image);
