#include "Pictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <stdexcept>

#include <png.h>

namespace {

constexpr unsigned kSide = 1024;
using Pixel = std::array<std::uint8_t, 4>; // not premultiplied

std::uint8_t byteOf(double value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)); }

Pixel gradient(unsigned x, unsigned y, std::mt19937&)
{
    return {byteOf(x / 4.0), byteOf(y / 4.0), byteOf((x + y) / 8.0), 255};
}

/// Soft shapes with the grain of a film, which fade out toward the corners.
Pixel photo(unsigned x, unsigned y, std::mt19937& random)
{
    const double across = x / 97.0, down = y / 61.0;
    const double light = 128 + 60 * std::sin(across) * std::cos(down) + 40 * std::sin(across * down / 9);
    const double grain = static_cast<double>(random() % 9) - 4;
    const double fade = 1.4 - std::hypot(x - 512.0, y - 512.0) / 512;
    return {byteOf(light + grain), byteOf(light * 0.8 + grain), byteOf(200 - light * 0.5 + grain), byteOf(fade * 255)};
}

Pixel noise(unsigned, unsigned, std::mt19937& random)
{
    const auto bits = static_cast<std::uint32_t>(random());
    const auto part = [bits](int shift) { return static_cast<std::uint8_t>(bits >> shift); };
    return {part(0), part(8), part(16), part(24)};
}

using PixelAt = Pixel (*)(unsigned x, unsigned y, std::mt19937& random);
constexpr struct {
    const char* name;
    PixelAt pixelAt;
} kKinds[] = {{"gradient", gradient}, {"photo", photo}, {"noise", noise}};

void write(const std::string& path, PixelAt pixelAt)
{
    std::mt19937 random(1);
    std::vector<Pixel> pixels;
    for (unsigned y = 0; y < kSide; ++y)
        for (unsigned x = 0; x < kSide; ++x) pixels.push_back(pixelAt(x, y, random));
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = png.height = kSide;
    png.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&png, path.c_str(), 0, pixels.data(), 0, nullptr))
        throw std::runtime_error(path + ": " + png.message);
}

} // namespace

Pictures::Pictures()
{
    std::string folder = (std::filesystem::temp_directory_path() / "bench_zeui.XXXXXX").string();
    if (!mkdtemp(folder.data())) throw std::runtime_error(folder + ": no such folder can be made");
    mFolder = folder;
    for (const auto& [name, pixelAt] : kKinds) {
        mAll.push_back({name, (mFolder / name).string() + ".png"});
        write(mAll.back().path, pixelAt);
    }
}

Pictures::~Pictures()
{
    std::error_code error;
    std::filesystem::remove_all(mFolder, error);
}
