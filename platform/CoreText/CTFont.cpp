#include "CoreText/CTPango.h"

#include <cmath>

CTFont::CTFont(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CTFont::~CTFont() = default;

RetainPtr<CTFont> CTFontCreateWithName(const NSString* name, CGFloat size)
{
    constexpr CGFloat kSmallest = 0.1, kLargest = 4096, kUsual = 12;
    const CGFloat kept = std::isnan(size) ? kUsual : std::clamp(size, kSmallest, kLargest);
    PangoDescription description = CTDescriptionForName(name ? name->utf8() : std::string(), kept);
    const PangoText empty = CTLayoutOf(description.get(), {});
    const CTLineBounds bounds = CTBoundsOf(pango_layout_get_line_readonly(empty.get(), 0));
    return RetainPtr<CTFont>::adopt(new CTFont(std::make_unique<CTFont::Contents>(
        CTFont::Contents{kept, std::move(description), bounds.ascent, bounds.descent})));
}

CGFloat CTFontGetSize(CTFontRef font) { return font ? font->contents().size : 0; }

CGFloat CTFontGetAscent(CTFontRef font) { return font ? font->contents().ascent : 0; }

CGFloat CTFontGetDescent(CTFontRef font) { return font ? font->contents().descent : 0; }
