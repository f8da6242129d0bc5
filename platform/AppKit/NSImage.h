#pragma once

/// A picture in a file, read when it is first needed.
///
/// "Pattern@2x.png" beside "Pattern.png" holds twice the pixels and is drawn on displays of 1.5 pixels a point and
/// more; "Pattern-dark.png" and "Pattern-dark@2x.png" are drawn in the dark appearance. Each of them may be missing:
/// then the next best is drawn, and the appearance counts more than the pixels. Failure: a file that is missing or
/// can't be read is named in the log once, and the picture is empty.

#include "CoreGraphics/CGGeometry.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/NSString.h"

#include <array>

class NSImage final : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// @param path  of a PNG file; may be null or empty
    virtual bool initByReferencingFile(const NSString* path);

    NSSize size(); ///< in points; 0 by 0 for a picture that can't be read

    struct Representation {
        RetainPtr<const CGImage> image; ///< null when there is none
        CGFloat scale = 1;              ///< pixels a point
    };
    Representation representationForScale(CGFloat scale); ///< in the current appearance

private:
    struct Lazy {
        bool tried = false;
        RetainPtr<const CGImage> image;
    };
    const RetainPtr<const CGImage>& read(std::size_t variant);

    std::string mPath;
    std::array<Lazy, 4> mVariants; // the plain one last
};
