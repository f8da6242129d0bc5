// bench_zeui: loading pictures, beside the least that this takes, and look-ups in a resource cache.

#include "CoreFoundation/CFURL.h"
#include "Pictures.h"
#include "ZeResources.h"
#include "ZeUIBitmap.h"

#include <algorithm>
#include <cairo.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <stdexcept>

#include <benchmark/benchmark.h>
#include <png.h>

namespace {

template <auto Release> struct Releaser {
    void operator()(auto* object) const { Release(object); }
};
using Block = std::unique_ptr<std::uint8_t, Releaser<std::free>>;
using Surface = std::unique_ptr<cairo_surface_t, Releaser<cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, Releaser<cairo_destroy>>;

void premultiply(std::uint8_t* pixels, std::size_t size)
{
    for (std::uint8_t* pixel = pixels; pixel != pixels + size; pixel += 4)
        for (int i = 0; i < 3; ++i) {
            const unsigned product = static_cast<unsigned>(pixel[i] * pixel[3]) + 128;
            pixel[i] = static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
        }
}

Surface surfaceOver(const Block& pixels, const png_image& png)
{
    const int width = static_cast<int>(png.width), height = static_cast<int>(png.height);
    return Surface(cairo_image_surface_create_for_data(pixels.get(), CAIRO_FORMAT_ARGB32, width, height, 4 * width));
}

/// The same pixels as a loaded bitmap's, by the libraries alone.
Block loadPlainly(const std::string& path)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) throw std::runtime_error(path + ": " + png.message);
    png.format = PNG_FORMAT_RGBA;
    const std::size_t size = PNG_IMAGE_SIZE(png);
    const Block decoded(static_cast<std::uint8_t*>(std::malloc(size)));
    if (!png_image_finish_read(&png, nullptr, decoded.get(), 0, nullptr))
        throw std::runtime_error(path + ": " + png.message);
    premultiply(decoded.get(), size);

    Block drawn(static_cast<std::uint8_t*>(std::calloc(size, 1)));
    const Surface from = surfaceOver(decoded, png), to = surfaceOver(drawn, png);
    const Context cairo(cairo_create(to.get()));
    cairo_set_source_surface(cairo.get(), from.get(), 0, 0);
    cairo_paint(cairo.get());
    cairo_surface_flush(to.get());
    return drawn;
}

void measureBitmap(benchmark::State& state, const std::string& path)
{
    const auto url = CFURLCreateFromFileSystemRepresentation(path);
    for (auto _ : state) benchmark::DoNotOptimize(ZeBitmap(url).GetImage());
}

void measurePlain(benchmark::State& state, const std::string& path)
{
    for (auto _ : state) benchmark::DoNotOptimize(loadPlainly(path).get());
}

/// Both ways are only comparable where they end with the same bytes.
void compare(const std::string& path)
{
    const ZeBitmap bitmap(CFURLCreateFromFileSystemRepresentation(path).get());
    const auto pixels = CGImageGetPixels(bitmap.GetImage());
    if (pixels.empty() || std::memcmp(pixels.data(), loadPlainly(path).get(), pixels.size()) != 0)
        throw std::runtime_error(path + ": the bitmap's pixels differ from the libraries'");
}

std::vector<std::wstring> namesOfItems(std::int64_t count)
{
    std::vector<std::wstring> names;
    for (std::int64_t i = 0; i < count; ++i) names.push_back(L"IDS_CONTROL_" + std::to_wstring(i));
    return names;
}

/// One look-up of each item in turn, so that time is that of an average one.
void measureCache(benchmark::State& state, std::int64_t count)
{
    static int object;
    const auto names = namesOfItems(count);
    ZeResCache cache;
    for (const auto& name : names) cache.AddItem(name.c_str(), 0, &object, false, eResCacheObject);
    while (state.KeepRunningBatch(count))
        for (const auto& name : names)
            benchmark::DoNotOptimize(cache.GetResourceFromCache(name.c_str(), eResCacheObject, nullptr));
}

/// The comparisons alone that a search from the start takes.
void measureComparisons(benchmark::State& state, std::int64_t count)
{
    const auto names = namesOfItems(count);
    while (state.KeepRunningBatch(count))
        for (const auto& name : names)
            benchmark::DoNotOptimize(std::find_if(names.begin(), names.end(), [&](const std::wstring& item) {
                return std::wcscmp(item.c_str(), name.c_str()) == 0;
            }));
}

void registerAll(const Pictures& pictures)
{
    for (const Pictures::Picture& picture : pictures.all()) {
        compare(picture.path);
        const std::string name = std::string("load/") + picture.name;
        benchmark::RegisterBenchmark((name + "/bitmap").c_str(), measureBitmap, picture.path);
        benchmark::RegisterBenchmark((name + "/plain").c_str(), measurePlain, picture.path);
    }
    for (const std::int64_t count : {10, 100, 1000}) {
        const std::string name = "look-up/" + std::to_string(count);
        benchmark::RegisterBenchmark((name + "/cache").c_str(), measureCache, count);
        benchmark::RegisterBenchmark((name + "/wcscmp").c_str(), measureComparisons, count);
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Pictures pictures;
        registerAll(pictures);
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_zeui: %s\n", error.what());
        return 1;
    }
    return 0;
}
