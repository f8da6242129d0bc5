#pragma once

/// Fonts.
///
/// They come from a private configuration with exactly the files that the package depends on, so that every machine
/// draws and measures the same. Where a file is missing, one line in the log says so and the nearest font stands in.
/// Sizes and measures are in user space units; text isn't hinted, so measures grow with the size.

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/NSString.h"

#include <memory>

class CTFont final : public NSObject {
public:
    struct Contents; // complete inside this folder only
    explicit CTFont(std::unique_ptr<const Contents> contents);
    const Contents& contents() const { return *mContents; }

private:
    ~CTFont() override;

    std::unique_ptr<const Contents> mContents;
};
using CTFontRef = const CTFont*;

/// @param name  "Lucida Grande", "Lucida Grande-Bold", "Monaco" or "Times Roman"; any other, and null, gives the first
/// @param size  units of the em square, kept to 0.1 to 4096; 12 where it isn't a number
RetainPtr<CTFont> CTFontCreateWithName(const NSString* name, CGFloat size);
// 0 for null
CGFloat CTFontGetSize(CTFontRef font);
CGFloat CTFontGetAscent(CTFontRef font);  ///< above the baseline: 11.14 for "Lucida Grande" at 12
CGFloat CTFontGetDescent(CTFontRef font); ///< below the baseline, positive: 2.83 there
