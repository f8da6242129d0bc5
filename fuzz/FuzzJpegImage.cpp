// Pictures from JPEG files.

#include "FuzzPicture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto provider = CGDataProviderCreateWithData(nullptr, data, size, nullptr);
    FuzzExpectPicture(CGImageCreateWithJPEGDataProvider(provider.get()));
    return 0;
}
