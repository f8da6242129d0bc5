#pragma once

// What every picture must hold, whatever file it came from.

#include "CoreGraphics/CGImage.h"
#include "FuzzInput.h"

/// Null, a file that was refused, is fine.
inline void FuzzExpectPicture(const RetainPtr<CGImage>& image)
{
    if (!image) return;
    const std::size_t width = CGImageGetWidth(image.get()), height = CGImageGetHeight(image.get());
    const auto pixels = CGImageGetPixels(image.get());
    FuzzExpect(width > 0 && width <= 32767 && height > 0 && height <= 32767, "a picture has an area");
    FuzzExpect(pixels.size() >= width * height * 4, "each pixel has its bytes");
    for (std::size_t i = 0; i + 3 < width * 4; i += 4)
        FuzzExpect(pixels[i] <= pixels[i + 3] && pixels[i + 1] <= pixels[i + 3] && pixels[i + 2] <= pixels[i + 3],
                   "colours are premultiplied");
}
