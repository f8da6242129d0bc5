#pragma once

/// One element of an interface description, as an object reads it. For sources of this folder.

#include "AppKit/NSNibLoader.h"
#include "Foundation/NSCoder.h"

#include <optional>

class NSNibCoder final : public NSCoder {
public:
    NSNibCoder(NSNibLoader& loader, pugi::xml_node element) : mLoader(loader), mElement(element) {}

    bool containsValueForKey(const char* key) const override;
    double decodeDoubleForKey(const char* key, double fallback) const override;
    bool decodeBoolForKey(const char* key, bool fallback) const override;
    long decodeIntegerForKey(const char* key, long fallback) const override;
    RetainPtr<NSString> decodeStringForKey(const char* key) const override { return mLoader.textOf(mElement, key); }
    RetainPtr<NSObject> decodeObjectForKey(const char* key) override;

private:
    NSNibLoader& mLoader;
    pugi::xml_node mElement;
    mutable std::optional<NSRect> mFrame; ///< read once, so that what is wrong with it is said once
};
