#include "AppKit/NSImage.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSLog.h"

#include <filesystem>

NS_CLASS_TABLE(NSImage, NSObject, "")
NS_CLASS_TABLE_END

bool NSImage::initByReferencingFile(const NSString* path)
{
    if (path) mPath = path->utf8();
    return init();
}

const RetainPtr<const CGImage>& NSImage::read(Lazy& lazy, const std::string& path, bool isOptional)
{
    if (std::exchange(lazy.tried, true)) return lazy.image;
    std::error_code ignored;
    if (isOptional && !std::filesystem::exists(path, ignored)) return lazy.image;
    lazy.image = CGImageCreateWithPNGFile(path);
    if (!lazy.image) NSLog("can't read the image “%s”", path.c_str());
    return lazy.image;
}

NSImage::Representation NSImage::representationForScale(CGFloat scale)
{
    constexpr CGFloat kDoubleFrom = 1.5;
    if (scale >= kDoubleFrom) {
        const std::filesystem::path plain(mPath);
        const auto twice = plain.parent_path() / (plain.stem().string() + "@2x" + plain.extension().string());
        if (const auto& image = read(mDouble, twice.string(), true)) return {image, 2};
    }
    return {read(mPlain, mPath, false), 1};
}

NSSize NSImage::size()
{
    const CGImageRef image = read(mPlain, mPath, false);
    if (!image) return {};
    return {static_cast<CGFloat>(CGImageGetWidth(image)), static_cast<CGFloat>(CGImageGetHeight(image))};
}
