#include "CoreGraphics/CGCairo.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr off_t kMaxFileBytes = off_t{1} << 28;

class File {
public:
    // a pipe without a writer must not keep us waiting
    explicit File(const std::string& path) : mDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~File()
    {
        if (mDescriptor >= 0) close(mDescriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::optional<std::size_t> size() const
    {
        struct stat facts;
        if (mDescriptor < 0 || fstat(mDescriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
        if (facts.st_size > kMaxFileBytes) return std::nullopt;
        return static_cast<std::size_t>(facts.st_size);
    }

    bool read(std::span<std::uint8_t> bytes) const
    {
        while (!bytes.empty()) {
            const ssize_t count = ::read(mDescriptor, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return false;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }

private:
    int mDescriptor;
};

} // namespace

CGDataProvider::~CGDataProvider()
{
    if (mRelease) mRelease(mInfo, mBytes.data(), mBytes.size());
}

RetainPtr<CGDataProvider> CGDataProviderCreateWithData(void* info, const void* data, std::size_t size,
                                                       CGDataProviderReleaseDataCallback releaseData)
{
    const std::span<const std::uint8_t> bytes(static_cast<const std::uint8_t*>(data), size);
    return RetainPtr<CGDataProvider>::adopt(new CGDataProvider(info, bytes, releaseData));
}

RetainPtr<CGDataProvider> CGDataProviderCreateWithBlock(CGBlock block, std::size_t size)
{
    if (!block) return nullptr;
    std::uint8_t* bytes = block.get();
    auto provider =
        CGDataProviderCreateWithData(bytes, bytes, size, [](void* info, const void*, std::size_t) { std::free(info); });
    static_cast<void>(block.release()); // the provider frees it now
    return provider;
}

RetainPtr<CGDataProvider> CGDataProviderCreateWithURL(CFURLRef url)
{
    const File file(CFURLGetFileSystemRepresentation(url));
    const std::optional<std::size_t> size = file.size();
    if (!size) return nullptr;
    CGBlock block = CGBlockOfBytes(*size);
    if (!block || !file.read({block.get(), *size})) return nullptr;
    return CGDataProviderCreateWithBlock(std::move(block), *size);
}
