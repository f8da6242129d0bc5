#include "Standalone/Bundles.h"

#include "Foundation/NSBundle.h"
#include "TonaroCocoaView.h"

namespace {

constexpr const char* kHostBundleIdentifier = "org.tonaro.host";

RetainPtr<NSBundle> bundleIn(const std::filesystem::path& folder, const char* identifier)
{
    return NSBundle::bundleWithPath(folder / (std::string(identifier) + ".bundle"));
}

} // namespace

void registerBundles(const std::filesystem::path& folder)
{
    if (const auto host = bundleIn(folder, kHostBundleIdentifier)) NSBundle::setMainBundle(host);
    if (const auto view = bundleIn(folder, kTonaroViewBundleIdentifier)) NSBundle::registerBundle(view);
}

std::filesystem::path bundlesOfProgram()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / "lib" / "tonaro";
}
