#pragma once

/// PNG files of 1024 by 1024 pixels in a folder of their own, which ends with this object.

#include <filesystem>
#include <string>
#include <vector>

class Pictures {
public:
    struct Picture {
        const char* name;
        std::string path;
    };

    /// Throws std::runtime_error where a file can't be written.
    Pictures();
    ~Pictures();
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

    const std::vector<Picture>& all() const { return mAll; }

private:
    std::filesystem::path mFolder;
    std::vector<Picture> mAll;
};
