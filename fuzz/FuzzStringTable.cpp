// String tables in the classic text form.

#include "Foundation/NSStringsFile.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string error;
    const auto table = NSReadStrings({reinterpret_cast<const char*>(data), size}, "Main.strings", &error);
    FuzzExpect(table.get() || error.rfind("Main.strings:", 0) == 0, "an error names its place");
    return 0;
}
