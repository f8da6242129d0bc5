// Property lists, XML and binary.

#include "Foundation/NSPropertyList.h"
#include "Foundation/NSString.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto list = NSReadPropertyList({reinterpret_cast<const char*>(data), size});
    if (list.get())
        FuzzExpect(list->isEqual(list.get()) && list->description().get(), "what was read can be looked at");
    return 0;
}
