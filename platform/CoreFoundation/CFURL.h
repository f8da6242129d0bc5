#pragma once

/// The place of a file, as plain functions see it.

#include "CoreFoundation/CFBase.h"

#include <string>

class CFURL final : public NSObject {
public:
    explicit CFURL(std::string path) : mPath(std::move(path)) {}
    const std::string& path() const { return mPath; }

private:
    std::string mPath; ///< as the file system has it, in whatever encoding
};
using CFURLRef = const CFURL*;

/// The URL of the file at `path`, which need not exist; null for an empty path.
RetainPtr<const CFURL> CFURLCreateFromFileSystemRepresentation(const std::string& path);
/// The path it was made from; empty for null.
std::string CFURLGetFileSystemRepresentation(CFURLRef url);
