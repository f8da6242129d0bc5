#include "AppKit/NSNib.h"

#include "AppKit/NSNibLoader.h"
#include "Foundation/NSLog.h"

#include <fstream>
#include <sstream>

bool NSLoadNibNamed(const NSString* name, NSObject* owner)
{
    if (!name || !owner) return false;
    const NSBundle* const bundle = NSBundle::bundleForClass(owner->classTable());
    const std::string path = bundle ? bundle->pathForResource(name->utf8(), "xib") : std::string();
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (path.empty() || !file || !(text << file.rdbuf())) {
        NSLog("can't read the interface description “%s” of %s", name->utf8().c_str(), owner->classTable().name);
        return false;
    }
    return NSLoadNibText(text.str(), path, bundle, owner);
}

bool NSLoadNibText(std::string_view xml, const std::string& file, const NSBundle* bundle, NSObject* owner)
{
    const RetainPtr<NSObject> keep(owner);
    NSNibDocument document(xml, file);
    if (!document.parse()) return false;
    NSNibLoader(document, bundle, owner).load();
    return true;
}
