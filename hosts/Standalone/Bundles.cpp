#include "Standalone/Bundles.h"

#include "Foundation/NSBundle.h"

#include <filesystem>

void registerBundles()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto folder = program.parent_path().parent_path() / "lib" / "tonaro";
    if (const auto host = NSBundle::bundleWithPath(folder / "org.tonaro.host.bundle")) NSBundle::setMainBundle(host);
    if (const auto view = NSBundle::bundleWithPath(folder / "org.tonaro.view.bundle")) NSBundle::registerBundle(view);
}
