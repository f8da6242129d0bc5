// libpng's own one-call interface: it keeps its jumps to itself, so that no destructor of ours is ever skipped.

#include "CoreGraphics/CGCairo.h"

#include <png.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using File = std::unique_ptr<std::FILE, Releaser<std::fclose>>;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint64_t kMaxInflation = 1032; // no compressed byte can become more

struct PNGImage : png_image {
    PNGImage() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~PNGImage() { png_image_free(this); }
    PNGImage(const PNGImage&) = delete;
    PNGImage& operator=(const PNGImage&) = delete;
};

std::uint64_t bigEndian32(std::span<const std::uint8_t> bytes, std::size_t offset)
{
    return std::uint64_t{bytes[offset]} << 24 | std::uint64_t{bytes[offset + 1]} << 16 |
           std::uint64_t{bytes[offset + 2]} << 8 | std::uint64_t{bytes[offset + 3]};
}

/// Whether the chunks follow one another up to the closing one: the decoder doesn't look past the last row.
bool isWhole(std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t kSignature = 8, kFrame = 12; // length, name and checksum of a chunk
    std::size_t offset = kSignature;
    while (offset + kFrame <= bytes.size()) {
        const std::uint64_t length = bigEndian32(bytes, offset);
        if (length > bytes.size() - offset - kFrame) return false;
        if (std::memcmp(&bytes[offset + 4], "IEND", 4) == 0) return true;
        offset += kFrame + static_cast<std::size_t>(length);
    }
    return false;
}

/// Refuses sizes that the file's length can't hold, so that a few bytes never ask for much memory.
bool isPlausibleSize(const png_image& image, std::size_t fileBytes)
{
    const std::uint64_t width = image.width, height = image.height;
    if (!CGIsImageSize(width, height)) return false;
    const std::uint64_t leastBytes = height * (1 + width / 8); // one bit a pixel
    return width * height <= kCGMaxFilePixels && leastBytes <= fileBytes * kMaxInflation;
}

/// `pixel` with its three colours times alpha, each to the nearest: c * a / 255 is t + t / 256 for t = c * a + 128.
std::uint32_t premultiplied(std::uint32_t pixel)
{
    const std::uint32_t alpha = pixel >> 24;
    std::uint32_t redBlue = (pixel & 0xff00ff) * alpha + 0x800080;
    redBlue = (redBlue + (redBlue >> 8 & 0xff00ff)) >> 8 & 0xff00ff;
    std::uint32_t green = (pixel >> 8 & 0xff) * alpha + 0x80;
    green = (green + (green >> 8)) & 0xff00;
    return alpha << 24 | green | redBlue;
}

/// @return whether every alpha is 255
bool premultiply(std::span<std::uint8_t> pixels)
{
    std::uint32_t common = ~0U;
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
        std::uint32_t pixel;
        std::memcpy(&pixel, &pixels[i], 4);
        common &= pixel;
        pixel = premultiplied(pixel);
        std::memcpy(&pixels[i], &pixel, 4);
    }
    return common >> 24 == 0xFF;
}

Bytes unpremultiplied(CGImageRef image)
{
    const std::size_t bytesPerRow = 4 * CGImageGetWidth(image);
    Bytes straight;
    straight.reserve(bytesPerRow * CGImageGetHeight(image));
    for (std::size_t y = 0; y < CGImageGetHeight(image); ++y) {
        const auto row = CGImageGetPixels(image).subspan(y * CGImageGetBytesPerRow(image), bytesPerRow);
        straight.insert(straight.end(), row.begin(), row.end());
    }
    for (std::size_t i = 0; i + 3 < straight.size(); i += 4) {
        const unsigned alpha = straight[i + 3];
        for (std::size_t k = i; k < i + 3 && alpha; ++k)
            straight[k] = static_cast<std::uint8_t>(std::min(255u, (straight[k] * 255u + alpha / 2) / alpha));
    }
    return straight;
}

bool writePixels(CGImageRef image, std::FILE* file)
{
    PNGImage png;
    png.width = static_cast<png_uint_32>(CGImageGetWidth(image));
    png.height = static_cast<png_uint_32>(CGImageGetHeight(image));
    png.format = PNG_FORMAT_RGBA;
    const Bytes straight = unpremultiplied(image);
    return png_image_write_to_stdio(&png, file, 0, straight.data(), 0, nullptr) != 0 && std::fflush(file) == 0;
}

bool writeFile(CGImageRef image, const std::string& path)
{
    File file(std::fopen(path.c_str(), "wbe"));
    if (!file) return false;
    const bool written = writePixels(image, file.get());
    return std::fclose(file.release()) == 0 && written;
}

/// What a rename would put a file in place of, rather than write to.
bool isDeviceOrPipe(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

} // namespace

RetainPtr<CGImage> CGImageCreateWithPNGDataProvider(CGDataProviderRef provider)
{
    if (!provider) return nullptr;
    const std::span<const std::uint8_t> bytes = provider->bytes();
    PNGImage png;
    if (!png_image_begin_read_from_memory(&png, bytes.data(), bytes.size())) return nullptr;
    if (!isPlausibleSize(png, bytes.size()) || !isWhole(bytes)) return nullptr;
    png.format = PNG_FORMAT_RGBA;
    png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB; // 16 bits are finer steps of the same curve, not linear light
    const std::size_t width = png.width, height = png.height;
    CGBlock pixels = CGBlockOfBytes(PNG_IMAGE_SIZE(png));
    if (!pixels || !png_image_finish_read(&png, nullptr, pixels.get(), 0, nullptr)) return nullptr;
    const bool isOpaque = premultiply({pixels.get(), 4 * width * height});
    return CGImageCreateWithBlock(width, height, std::move(pixels), isOpaque);
}

RetainPtr<CGImage> CGImageCreateWithPNGFile(const std::string& path)
{
    const auto provider = CGDataProviderCreateWithURL(CFURLCreateFromFileSystemRepresentation(path).get());
    return CGImageCreateWithPNGDataProvider(provider);
}

bool CGImageWritePNGFile(CGImageRef image, const std::string& path)
{
    if (!image) return false;
    if (isDeviceOrPipe(path)) return writeFile(image, path);
    const std::string unfinished = path + "." + std::to_string(getpid()) + ".part";
    if (writeFile(image, unfinished) && std::rename(unfinished.c_str(), path.c_str()) == 0) return true;
    std::remove(unfinished.c_str());
    return false;
}
