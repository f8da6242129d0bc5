#pragma once

/// Bytes that pictures are made of, kept as long as any picture needs them.

#include "CoreFoundation/CFURL.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Told once that the bytes are no longer needed; must not throw.
using CGDataProviderReleaseDataCallback = void (*)(void* info, const void* data, std::size_t size);

class CGDataProvider final : public NSObject {
public:
    CGDataProvider(void* info, std::span<const std::uint8_t> bytes, CGDataProviderReleaseDataCallback release)
        : mInfo(info), mBytes(bytes), mRelease(release)
    {
    }
    std::span<const std::uint8_t> bytes() const { return mBytes; }

private:
    ~CGDataProvider() override;

    void* mInfo;
    std::span<const std::uint8_t> mBytes;
    CGDataProviderReleaseDataCallback mRelease;
};
using CGDataProviderRef = const CGDataProvider*;

/// `size` bytes at `data`, which stay where they are and don't change. `releaseData`, which may be null, is called with
/// the three other arguments when the provider's last owner, a picture perhaps, lets go of it.
RetainPtr<CGDataProvider> CGDataProviderCreateWithData(void* info, const void* data, std::size_t size,
                                                       CGDataProviderReleaseDataCallback releaseData);
/// The bytes that the file has now; null where it can't be read, is no regular file or has more than 256 MiB.
RetainPtr<CGDataProvider> CGDataProviderCreateWithURL(CFURLRef url);
