#include "AppKit/NSImage.h"

#include "AppKit/NSAppearance.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSLog.h"

#include <filesystem>

namespace {

/// The files of one picture, the one that is drawn where it can be first.
struct Variant {
    const char* suffix;
    CGFloat scale;
    bool isDark;
};
constexpr Variant kVariants[] = {{"-dark@2x", 2, true}, {"-dark", 1, true}, {"@2x", 2, false}, {"", 1, false}};
constexpr std::size_t kPlain = std::size(kVariants) - 1;

} // namespace

NS_CLASS_TABLE(NSImage, NSObject, "")
NS_CLASS_TABLE_END

bool NSImage::initByReferencingFile(const NSString* path)
{
    if (path) mPath = path->utf8();
    return init();
}

const RetainPtr<const CGImage>& NSImage::read(std::size_t variant)
{
    Lazy& lazy = mVariants[variant];
    if (std::exchange(lazy.tried, true)) return lazy.image;
    const std::filesystem::path plain(mPath);
    const bool isOptional = variant != kPlain;
    const std::string name = plain.stem().string() + kVariants[variant].suffix + plain.extension().string();
    const std::string path = isOptional ? (plain.parent_path() / name).string() : mPath;
    std::error_code ignored;
    if (isOptional && !std::filesystem::exists(path, ignored)) return lazy.image;
    lazy.image = CGImageCreateWithPNGFile(path);
    if (!lazy.image) NSLog("can't read the image “%s”", path.c_str());
    return lazy.image;
}

NSImage::Representation NSImage::representationForScale(CGFloat scale)
{
    constexpr CGFloat kDoubleFrom = 1.5;
    for (std::size_t i = 0; i < kPlain; ++i) {
        const Variant& variant = kVariants[i];
        if (variant.scale > 1 && scale < kDoubleFrom) continue;
        if (variant.isDark && NSAppearance::current() != NSAppearanceName::dark) continue;
        if (const auto& image = read(i)) return {image, variant.scale};
    }
    return {read(kPlain), 1};
}

NSSize NSImage::size()
{
    const CGImageRef image = read(kPlain);
    if (!image) return {};
    return {static_cast<CGFloat>(CGImageGetWidth(image)), static_cast<CGFloat>(CGImageGetHeight(image))};
}
