// Interface descriptions.

#include "AppKit/NSNib.h"
#include "AppKit/NSView.h"
#include "Foundation/NSAutoreleasePool.h"
#include "FuzzInput.h"

namespace {

class FuzzOwner final : public NSObject {
public:
    NS_CLASS(FuzzOwner)
    Outlet<NSView> view;
};
NS_CLASS_TABLE(FuzzOwner, NSObject, "")
    .outlet("view", &FuzzOwner::view)
NS_CLASS_TABLE_END

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const NSAutoreleasePool pool;
    const auto owner = make<FuzzOwner>();
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const bool isMade = NSLoadNibText(document, "Fuzz.xib", nullptr, owner.get());
    FuzzExpect(isMade || !owner->view.get(), "where nothing was made, nothing is connected");
    return 0;
}
