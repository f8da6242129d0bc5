#include "CoreFoundation/CFBundle.h"

namespace {

std::string UTF8Of(CFStringRef text) { return text ? text->utf8() : std::string(); }

} // namespace

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier)
{
    const std::string wanted = UTF8Of(identifier);
    if (wanted.empty()) return nullptr; // the identifier of bundles that have none
    if (NSBundle* const bundle = NSBundle::bundleWithIdentifier(wanted)) return bundle;
    NSBundle* const main = NSBundle::mainBundle();
    return main->bundleIdentifier() == wanted ? main : nullptr;
}

RetainPtr<const NSString> CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                                      CFStringRef table)
{
    if (!bundle || !key) return nullptr;
    return bundle->localizedStringForKey(key, value, table);
}

RetainPtr<const CFURL> CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                               CFStringRef subdirectory)
{
    if (!bundle || CFStringGetLength(name) == 0) return nullptr;
    const std::string folder = UTF8Of(subdirectory);
    const std::string file = (folder.empty() ? folder : folder + "/") + UTF8Of(name);
    return CFURLCreateFromFileSystemRepresentation(bundle->pathForResource(file, UTF8Of(type)));
}
