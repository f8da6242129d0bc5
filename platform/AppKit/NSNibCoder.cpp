#include "AppKit/NSNibCoder.h"

#include <cmath>

namespace {

constexpr struct {
    std::string_view key;
    CGFloat (*of)(NSRect frame);
} kFrameKeys[] = {
    {"frame.x", [](NSRect frame) { return frame.origin.x; }},
    {"frame.y", [](NSRect frame) { return frame.origin.y; }},
    {"frame.width", [](NSRect frame) { return frame.size.width; }},
    {"frame.height", [](NSRect frame) { return frame.size.height; }},
};

} // namespace

bool NSNibCoder::containsValueForKey(const char* key) const
{
    return mElement.attribute(key) || mLoader.childFor(mElement, key);
}

double NSNibCoder::decodeDoubleForKey(const char* key, double fallback) const
{
    for (const auto& row : kFrameKeys) {
        if (row.key != key) continue;
        if (!mFrame) mFrame = mLoader.frameOf(mElement);
        return row.of(*mFrame);
    }
    return mLoader.numberOf(mElement, key, fallback);
}

bool NSNibCoder::decodeBoolForKey(const char* key, bool fallback) const
{
    const pugi::xml_attribute attribute = mElement.attribute(key);
    if (!attribute) return fallback;
    const std::string_view text = attribute.value();
    if (text != "YES" && text != "NO")
        mLoader.report(mElement, "“" + std::string(text) + "” in “" + key + "” is neither YES nor NO");
    return text == "YES" || (text != "NO" && fallback);
}

long NSNibCoder::decodeIntegerForKey(const char* key, long fallback) const
{
    constexpr double kMost = 2147483647; // so that it fits whatever it is stored in
    const double value = mLoader.numberOf(mElement, key, static_cast<double>(fallback));
    if (std::fabs(value) <= kMost && value == std::trunc(value)) return static_cast<long>(value);
    mLoader.report(mElement, "“" + std::string(mElement.attribute(key).value()) + "” in “" + key + "” is no integer");
    return fallback;
}

RetainPtr<NSObject> NSNibCoder::decodeObjectForKey(const char* key)
{
    const pugi::xml_node child = mLoader.childFor(mElement, key);
    return child ? mLoader.objectFor(child) : nullptr;
}
