#include "CoreFoundation/CFURL.h"

RetainPtr<const CFURL> CFURLCreateFromFileSystemRepresentation(const std::string& path)
{
    return path.empty() ? nullptr : RetainPtr<const CFURL>::adopt(new CFURL(path));
}

std::string CFURLGetFileSystemRepresentation(CFURLRef url) { return url ? url->path() : std::string(); }
