#include "AppKit/NSColor.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSColor, NSObject, "")
NS_CLASS_TABLE_END

RetainPtr<NSColor> NSColor::colorWithRGBA(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    auto color = make<NSColor>();
    color->mColor = CGColorCreateRGBA(red, green, blue, alpha);
    return color;
}

RetainPtr<NSColor> NSColor::colorWithPatternImage(NSImage* image)
{
    auto color = make<NSColor>();
    color->mPattern = image;
    color->mAppearance = NSAppearanceColorName::windowBackgroundColor;
    return color;
}

RetainPtr<NSColor> NSColor::colorNamed(std::string_view name)
{
    const auto known = NSAppearanceColorNamed(name);
    return known ? colorNamed(*known) : nullptr;
}

RetainPtr<NSColor> NSColor::colorNamed(NSAppearanceColorName name)
{
    auto color = make<NSColor>();
    color->mAppearance = name;
    return color;
}

bool NSColor::initWithCoder(NSCoder& coder)
{
    if (const auto name = coder.decodeStringForKey("name")) {
        const auto known = NSAppearanceColorNamed(name->utf8());
        if (!known) return false;
        mAppearance = *known;
        return init();
    }
    const double white = coder.decodeDoubleForKey("white", 0);
    mColor = CGColorCreateRGBA(coder.decodeDoubleForKey("red", white), coder.decodeDoubleForKey("green", white),
                               coder.decodeDoubleForKey("blue", white), coder.decodeDoubleForKey("alpha", 1));
    return init();
}

RetainPtr<const CGColor> NSColor::CGColorForScale(CGFloat scale) const
{
    if (mPattern) {
        const NSImage::Representation picture = mPattern->representationForScale(scale);
        if (picture.image) return CGColorCreateWithPatternImage(picture.image, picture.scale);
    }
    return mColor ? mColor : RetainPtr<const CGColor>(NSAppearanceColor(mAppearance));
}

bool NSColor::isOpaqueForScale(CGFloat scale) const
{
    const NSImage::Representation picture =
        mPattern ? mPattern->representationForScale(scale) : NSImage::Representation{};
    if (picture.image) return CGImageIsOpaque(picture.image);
    const RetainPtr<const CGColor> color = CGColorForScale(scale);
    return color && CGColorGetComponents(color)[3] >= 1;
}

void NSColor::set() const
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const RetainPtr<const CGColor> color = CGColorForScale(NSGraphicsContext::currentScale());
    CGContextSetFillColorWithColor(context, color);
    CGContextSetStrokeColorWithColor(context, color);
}
