// libpng's own one-call interface: it keeps its jumps to itself, so that no destructor of ours is ever skipped.

#include "CoreGraphics/CGCairo.h"

#include <png.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <unistd.h>

namespace {

using File = std::unique_ptr<std::FILE, Releaser<std::fclose>>;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMaxFileBytes = std::size_t{1} << 28;
constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 26;
constexpr std::uint64_t kMaxInflation = 1032; // no compressed byte can become more

struct PNGImage : png_image {
    PNGImage() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~PNGImage() { png_image_free(this); }
    PNGImage(const PNGImage&) = delete;
    PNGImage& operator=(const PNGImage&) = delete;
};

std::optional<Bytes> contentsOfFile(const std::string& path)
{
    const File file(std::fopen(path.c_str(), "rbe"));
    if (!file) return std::nullopt;
    Bytes bytes;
    std::array<std::uint8_t, 16384> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
        if (bytes.size() + count > kMaxFileBytes) return std::nullopt;
        bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    }
    if (std::ferror(file.get())) return std::nullopt;
    return bytes;
}

std::uint64_t bigEndian32(const Bytes& bytes, std::size_t offset)
{
    return std::uint64_t{bytes[offset]} << 24 | std::uint64_t{bytes[offset + 1]} << 16 |
           std::uint64_t{bytes[offset + 2]} << 8 | std::uint64_t{bytes[offset + 3]};
}

/// Whether the chunks follow one another up to the closing one: the decoder doesn't look past the last row.
bool isWhole(const Bytes& bytes)
{
    constexpr std::size_t kSignature = 8, kFrame = 12; // length, name and checksum of a chunk
    std::size_t offset = kSignature;
    while (offset + kFrame <= bytes.size()) {
        const std::uint64_t length = bigEndian32(bytes, offset);
        if (length > bytes.size() - offset - kFrame) return false;
        if (std::equal(&bytes[offset + 4], &bytes[offset + 8], "IEND")) return true;
        offset += kFrame + static_cast<std::size_t>(length);
    }
    return false;
}

/// Refuses sizes that the file's length can't hold, so that a few bytes never ask for much memory.
bool isPlausibleSize(const png_image& image, std::size_t fileBytes)
{
    const std::uint64_t width = image.width, height = image.height;
    if (width == 0 || height == 0 || width > kCGMaxSide || height > kCGMaxSide) return false;
    const std::uint64_t leastBytes = height * (1 + width / 8); // one bit a pixel
    return width * height <= kMaxPixels && leastBytes <= fileBytes * kMaxInflation;
}

void premultiply(Bytes& pixels)
{
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
        const unsigned alpha = pixels[i + 3];
        for (std::size_t k = i; k < i + 3; ++k) pixels[k] = static_cast<std::uint8_t>((pixels[k] * alpha + 127) / 255);
    }
}

Bytes unpremultiplied(std::span<const std::uint8_t> pixels)
{
    Bytes straight(pixels.begin(), pixels.end());
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
    const Bytes straight = unpremultiplied(CGImageGetPixels(image));
    return png_image_write_to_stdio(&png, file, 0, straight.data(), 0, nullptr) != 0 && std::fflush(file) == 0;
}

} // namespace

RetainPtr<CGImage> CGImageCreateWithPNGFile(const std::string& path)
{
    const std::optional<Bytes> bytes = contentsOfFile(path);
    if (!bytes) return nullptr;
    PNGImage png;
    if (!png_image_begin_read_from_memory(&png, bytes->data(), bytes->size())) return nullptr;
    if (!isPlausibleSize(png, bytes->size()) || !isWhole(*bytes)) return nullptr;
    png.format = PNG_FORMAT_RGBA;
    png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB; // 16 bits are finer steps of the same curve, not linear light
    const std::size_t width = png.width, height = png.height;
    Bytes pixels(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, pixels.data(), 0, nullptr)) return nullptr;
    premultiply(pixels);
    return RetainPtr<CGImage>::adopt(
        new CGImage(std::make_unique<CGImage::Contents>(width, height, std::move(pixels))));
}

bool CGImageWritePNGFile(CGImageRef image, const std::string& path)
{
    if (!image) return false;
    const std::string unfinished = path + "." + std::to_string(getpid()) + ".part";
    File file(std::fopen(unfinished.c_str(), "wbe"));
    if (!file) return false;
    const bool written = writePixels(image, file.get());
    const bool closed = std::fclose(file.release()) == 0;
    if (written && closed && std::rename(unfinished.c_str(), path.c_str()) == 0) return true;
    std::remove(unfinished.c_str());
    return false;
}
