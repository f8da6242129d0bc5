#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

/// A folder that goes away with this.
class TemporaryFolder {
public:
    TemporaryFolder() : mPath((std::filesystem::temp_directory_path() / "tonaro-XXXXXX").string())
    {
        if (!mkdtemp(mPath.data())) throw std::filesystem::filesystem_error("no folder", std::error_code());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(mPath); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return mPath; }
    std::string operator/(const std::string& name) const { return mPath + "/" + name; }
    /// The names in it, in order.
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(mPath)) names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// Writes a file; its folders are made.
    void write(const std::string& name, std::string_view bytes) const
    {
        const std::filesystem::path file = *this / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }

private:
    std::string mPath;
};
