#pragma once

/// Colours: sRGB, components 0 to 1, not premultiplied; or a picture that repeats. A colour never changes.
///
/// Components outside 0 to 1 count as the nearer end, not-a-number as 0.

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/NSObject.h"

#include <array>
#include <memory>

class CGImage;
using CGImageRef = const CGImage*;

class CGColor final : public NSObject {
public:
    struct Contents; // complete inside this folder only
    explicit CGColor(std::unique_ptr<const Contents> contents);
    const Contents& contents() const { return *mContents; }

private:
    ~CGColor() override;

    std::unique_ptr<const Contents> mContents;
};
using CGColorRef = const CGColor*;

RetainPtr<CGColor> CGColorCreateRGBA(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
/// A colour that repeats `image` from (0, 0) of the window's content, one image pixel for each `1 / imageScale` points.
/// Pixels stay sharp where each covers a whole number of the context's. Null without an image or with a scale that
/// isn't above 0.
RetainPtr<CGColor> CGColorCreateWithPatternImage(CGImageRef image, CGFloat imageScale);
std::array<CGFloat, 4> CGColorGetComponents(CGColorRef color); ///< all 0 for a pattern and for null
