#include "AppKit/NSNibDocument.h"

#include "Foundation/NSLog.h"

#include <algorithm>

bool NSNibDocument::parse()
{
    const pugi::xml_parse_result result =
        mDocument.load_buffer(mText.data(), mText.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result) {
        reportAt(result.offset, std::string("this is no complete XML: ") + result.description());
        return false;
    }
    if (!objects()) reportAt(0, "no “objects” in a “document”");
    return bool(objects());
}

void NSNibDocument::report(pugi::xml_node where, const std::string& message) const
{
    reportAt(where.offset_debug(), message);
}

void NSNibDocument::reportAt(std::ptrdiff_t offset, const std::string& message) const
{
    const auto before = mText.substr(0, static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0)));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    NSLog("%s:%d: %s", mFile.c_str(), static_cast<int>(line), message.c_str());
}
