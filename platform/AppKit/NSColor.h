#pragma once

/// A colour to draw with: plain, a picture that repeats, or one of the appearance's by name.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSImage.h"
#include "CoreGraphics/CGContext.h"
#include "Foundation/NSCoder.h"

class NSColor final : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// Components 0 to 1.
    static RetainPtr<NSColor> colorWithRGBA(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    /// Repeats the picture from the corner of the window's content. A picture that can't be read paints like the
    /// window's own background.
    static RetainPtr<NSColor> colorWithPatternImage(NSImage* image);
    /// A colour of the appearance, looked up when it is used: "secondaryLabelColor". Null for an unknown name.
    static RetainPtr<NSColor> colorNamed(std::string_view name);
    static RetainPtr<NSColor> colorNamed(NSAppearanceColorName name);

    /// Reads name, or red, green, blue and alpha, or white and alpha.
    bool initWithCoder(NSCoder& coder) override;

    /// Makes it the fill and stroke colour of the current context.
    void set() const;
    /// For a drawing at `scale` in the current appearance.
    RetainPtr<const CGColor> CGColorForScale(CGFloat scale) const;
    bool isOpaqueForScale(CGFloat scale) const; ///< whether nothing shows through it

private:
    RetainPtr<const CGColor> mColor;
    RetainPtr<NSImage> mPattern;
    NSAppearanceColorName mAppearance{}; ///< where there is neither a colour nor a readable picture
};
