#include "Samples.h"

#include "Foundation/NSBundle.h"

#include <filesystem>
#include <stdexcept>

namespace {

void registerBundle()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto bundle = program.parent_path().parent_path() / "lib" / "tonaro" / "org.tonaro.gallery.bundle";
    const auto loaded = NSBundle::bundleWithPath(bundle);
    if (!loaded) throw std::runtime_error(bundle.string() + ": no bundle");
    NSBundle::registerBundle(loaded);
}

ZeBitmap* loadImage(ZeResources& resources, const wchar_t* name)
{
    void* image = nullptr;
    const ZeResult result = resources.GetResImage(name, &image);
    auto* const bitmap = static_cast<ZeBitmap*>(image);
    if (result != kZeSuccess || bitmap->GetWidth() == 0)
        throw std::runtime_error(std::filesystem::path(name).string() + ": can't be read");
    return bitmap;
}

} // namespace

Samples::Samples()
{
    registerBundle();
    if (resources.Init(L"org.tonaro.gallery", nullptr) != kZeSuccess)
        throw std::runtime_error("org.tonaro.gallery: no bundle of that identifier");
    picture = loadImage(resources, L"picture.png");
    strip = loadImage(resources, L"strip.png");
}

void drawImage(ZeGraphicsContext& context, CGImageRef image, double x, double y)
{
    const ZeGraphicsContext source(image, true);
    context.ZeCopyBitmap({x, y}, &source, nullptr, ZeRect());
}

void drawMarks(ZeGraphicsContext& context, std::span<const ZeFPoint> points)
{
    for (const ZeFPoint point : points)
        context.ZeFillRectSolid(colorOf(0xC83C28, 0x80), ZeRect(point.x - 2, point.y - 2, 4.0, 4.0));
}
