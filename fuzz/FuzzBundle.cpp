// Bundles on disk, with texts and a picture, through the resource loader: two bytes (cell, cells), a line (the id of a
// text), then the files of kFiles, each up to a line "%%". An empty one isn't there.

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"
#include "FuzzPicture.h"
#include "ZeResources.h"
#include "ZeUIBitmap.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr const char* kFiles[] = {"Info.plist", "Resources/de.lproj/ZeCustomPlist.strings",
                                  "Resources/ZeShared.strings", "Resources/de.lproj/picture"};
constexpr std::size_t kLongestId = 63;

/// One folder for all trials, gone with the process.
class Folder {
public:
    Folder() : mPath(fs::temp_directory_path() / ("bundle-" + std::to_string(getpid())))
    {
        fs::create_directories(mPath / "Contents/Resources/de.lproj");
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(mPath, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    void write(const char* name, std::string_view bytes) const
    {
        const fs::path file = mPath / "Contents" / name;
        fs::remove(file);
        if (!bytes.empty()) std::ofstream(file, std::ios::binary) << bytes;
    }
    std::string path() const { return mPath; }

private:
    fs::path mPath;
};

std::string_view takeFile(std::string_view& rest)
{
    constexpr std::string_view kEnd = "\n%%\n";
    const std::size_t end = rest.find(kEnd);
    const std::string_view file = rest.substr(0, end);
    rest.remove_prefix(end == rest.npos ? rest.size() : end + kEnd.size());
    return file;
}

void tryText(ZeResources& resources, const ZeString& id)
{
    ZeString text, again, stripped;
    FuzzExpect(resources.GetResString(id.c_str(), text, false) == kZeSuccess, "every id has a text");
    FuzzExpect(resources.GetResString(id.c_str(), again, false) == kZeSuccess && again == text, "and keeps it");
    resources.GetResString(id.c_str(), stripped, true);
    const auto marks = static_cast<std::size_t>(std::count(text.begin(), text.end(), L'&'));
    FuzzExpect(stripped.size() + marks >= text.size() && stripped.size() <= text.size(), "only marks are taken out");
}

void tryCell(ZeResources& resources, ZeResCache& cache, void* picture, int index, int count)
{
    tagSIZE size;
    resources.GetImageSize(picture, &size);
    void *cell = nullptr, *hilite = nullptr;
    const ZeResult result = resources.GetGlyph(picture, index, count, &cell, &hilite);
    FuzzExpect((result == kZeSuccess) == (cell && hilite), "a code that isn't 0 has no cell");
    if (result != kZeSuccess) return;
    const auto *plain = static_cast<CGImageRef>(cell), *framed = static_cast<CGImageRef>(hilite);
    const auto height = static_cast<std::size_t>(size.height);
    FuzzExpect(CGImageGetHeight(plain) == height && CGImageGetHeight(framed) == height, "cells are as high as a strip");
    FuzzExpect(CGImageGetWidth(plain) == CGImageGetWidth(framed), "both have one size");
    cache.UnloadResource(L"picture");
    cache.UnloadResource(L"picture");
    FuzzExpectPicture(RetainPtr<CGImage>(static_cast<CGImage*>(cell))); // its pixels outlive the strip
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Folder folder;
    const NSAutoreleasePool pool;
    FuzzInput input(data, size);
    const int index = input.take<std::int8_t>(), count = input.take<std::int8_t>();
    const ZeString id = FuzzText(input.line()).substr(0, kLongestId);
    std::string_view rest = input.rest();
    bool hasPicture = false;
    for (const char* name : kFiles) {
        const std::string_view file = takeFile(rest);
        folder.write(name, file);
        hasPicture = !file.empty();
    }

    NSBundle::setPreferredLanguages({"de"});
    const auto bundle = NSBundle::bundleWithPath(folder.path());
    if (!bundle) return 0;
    NSBundle::setMainBundle(bundle);
    const std::string identifier = bundle->bundleIdentifier();
    ZeResCache cache;
    ZeResources resources;
    const ZeResult found = resources.Init(FuzzText(identifier).c_str(), &cache);
    FuzzExpect((found == kZeSuccess) == !identifier.empty(), "a bundle is found by its identifier");
    if (found != kZeSuccess) return 0;
    tryText(resources, id);
    void* picture = nullptr;
    const ZeResult loaded = resources.GetResImage(L"picture", &picture);
    FuzzExpect(loaded == (hasPicture ? kZeSuccess : kZeImageNotFound), "a file that is there is a bitmap");
    if (!picture) return 0;
    FuzzExpectPicture(RetainPtr<CGImage>(static_cast<ZeBitmap*>(picture)->image));
    tryCell(resources, cache, picture, index, count);
    return 0;
}
