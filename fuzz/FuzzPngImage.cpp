// Pictures from PNG files.

#include "CoreGraphics/CGImage.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto provider = CGDataProviderCreateWithData(nullptr, data, size, nullptr);
    const auto image = CGImageCreateWithPNGDataProvider(provider.get());
    if (!image) return 0;
    const std::size_t width = CGImageGetWidth(image.get()), height = CGImageGetHeight(image.get());
    const auto pixels = CGImageGetPixels(image.get());
    FuzzExpect(width > 0 && width <= 32767 && height > 0 && height <= 32767, "a picture has an area");
    FuzzExpect(pixels.size() >= width * height * 4, "each pixel has its bytes");
    for (std::size_t i = 0; i + 3 < width * 4; i += 4)
        FuzzExpect(pixels[i] <= pixels[i + 3] && pixels[i + 1] <= pixels[i + 3] && pixels[i + 2] <= pixels[i + 3],
                   "colours are premultiplied");
    return 0;
}
