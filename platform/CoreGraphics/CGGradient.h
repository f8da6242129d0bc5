#pragma once

/// Runs of colours for `CGContextDrawLinearGradient`. A gradient never changes.

#include "CoreGraphics/CGColor.h"

#include <memory>
#include <span>

class CGGradient final : public NSObject {
public:
    struct Contents; // complete inside this folder only
    explicit CGGradient(std::unique_ptr<const Contents> contents);
    const Contents& contents() const { return *mContents; }

private:
    ~CGGradient() override;

    std::unique_ptr<const Contents> mContents;
};
using CGGradientRef = const CGGradient*;

/// Colours at positions 0 to 1, ascending; as many as the shorter list has. Null where that is none.
RetainPtr<CGGradient> CGGradientCreate(std::span<const CGColorRef> colors, std::span<const CGFloat> locations);
