#pragma once

/// A bundle in a temporary directory, gone with it. For tests.

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/NSBundle.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

class BundleOnDisk {
public:
    explicit BundleOnDisk(const std::string& identifier)
    {
        char name[] = "/tmp/bundle.XXXXXX";
        mRoot = mkdtemp(name);
        write("../Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier +
                  "</string></dict></plist>");
        bundle = NSBundle::bundleWithPath(mRoot);
    }
    ~BundleOnDisk()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mRoot, ignored);
    }
    BundleOnDisk(const BundleOnDisk&) = delete;
    BundleOnDisk& operator=(const BundleOnDisk&) = delete;

    /// A resource; its folders are made.
    void write(const std::string& name, std::string_view bytes) const
    {
        std::ofstream(pathFor(name), std::ios::binary) << bytes;
    }
    void writePNG(const std::string& name, std::size_t width, std::size_t height) const
    {
        const auto context = CGBitmapContextCreate(width, height);
        CGImageWritePNGFile(CGBitmapContextCreateImage(context).get(), pathFor(name));
    }
    void remove(const std::string& name) const { std::filesystem::remove(pathFor(name)); }

    RetainPtr<NSBundle> bundle;

private:
    std::string pathFor(const std::string& name) const
    {
        const auto path = (std::filesystem::path(mRoot) / "Contents/Resources" / name).lexically_normal();
        std::filesystem::create_directories(path.parent_path());
        return path;
    }

    std::string mRoot;
};
