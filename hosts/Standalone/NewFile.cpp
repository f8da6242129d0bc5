#include "Standalone/NewFile.h"

#include "Standalone/Options.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kEverybody = 0666;
constexpr mode_t kRights = 07777;
constexpr int kMostLinks = 40; ///< as the system's own limit: links may lead in a circle

[[noreturn]] void fail(const std::string& name, int error) { throw InputError{name + ": " + std::strerror(error)}; }

/// What `open` would give a new file.
mode_t rightsOfNewFiles()
{
    const mode_t mask = umask(0);
    umask(mask);
    return kEverybody & ~mask;
}

/// The file that `name` leads to, if it is a link; also where there is none yet.
std::string pathBehind(const std::string& name)
{
    std::error_code error;
    std::filesystem::path path = name;
    for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, error); ++links)
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    return path.string();
}

} // namespace

NewFile::NewFile(const std::string& name) : mName(name), mPath(pathBehind(name))
{
    struct stat facts {};
    const bool exists = stat(mPath.c_str(), &facts) == 0;
    if (!exists && errno != ENOENT) fail(mName, errno);
    if (exists && S_ISDIR(facts.st_mode)) fail(mName, EISDIR);
    if (exists && access(mPath.c_str(), W_OK) != 0) fail(mName, errno);
    if (exists && !S_ISREG(facts.st_mode)) {
        mDescriptor = open(mPath.c_str(), O_WRONLY | O_CLOEXEC);
        if (mDescriptor < 0) fail(mName, errno);
        return;
    }
    openTemporary();
    fchmod(mDescriptor, exists ? facts.st_mode & kRights : rightsOfNewFiles());
}

void NewFile::openTemporary()
{
    const std::filesystem::path path = mPath;
    std::string hidden = ".";
    hidden.append(path.filename().string()).append(".XXXXXX");
    mTemporary = path.parent_path() / hidden;
    mDescriptor = mkostemp(mTemporary.data(), O_CLOEXEC);
    if (mDescriptor >= 0) return;
    mTemporary.clear();
    fail(mName, errno);
}

NewFile::~NewFile()
{
    if (!mTemporary.empty()) unlink(mTemporary.c_str());
    if (mDescriptor >= 0) close(mDescriptor);
}

void NewFile::keep()
{
    // some file systems tell only now that there was no room
    const int descriptor = mDescriptor;
    mDescriptor = -1;
    if (close(descriptor) != 0) fail(mName, errno);
    if (!mTemporary.empty() && rename(mTemporary.c_str(), mPath.c_str()) != 0) fail(mName, errno);
    mTemporary.clear();
}
