#include "ZeFontManager.h"

#include "AppKit/NSGraphicsContext.h"
#include "CoreText/CTLine.h"
#include "Foundation/NSAutoreleasePool.h"
#include "ZeTruncate.h"

#include <cmath>

namespace {

struct FontFacts {
    const char* name;
    CGFloat size;
};
constexpr FontFacts kFonts[] = {
    {"Lucida Grande", 12}, {"Lucida Grande-Bold", 12}, {"Monaco", 12}, {"Lucida Grande", 10},
    {"Monaco", 10},        {"Times Roman", 16},
};

/// The smallest whole number that isn't below.
std::int32_t RoundedUp(CGFloat extent) { return static_cast<std::int32_t>(ZeTruncate(std::ceil(extent))); }

} // namespace

ZeFontManagerMacImpl& ZeFontManager::sharedFontManager()
{
    static ZeFontManagerMacImpl manager;
    return manager;
}

CTFontRef ZeFontManager::fontFor(int fontId)
{
    const auto stored = fonts.find(fontId);
    return stored != fonts.end() ? stored->second.first.get() : createFontFor(fontId);
}

tagSIZE ZeFontManager::fontSize(int fontId)
{
    auto stored = fonts.find(fontId);
    if (stored == fonts.end()) {
        if (!createFontFor(fontId)) return {};
        stored = fonts.find(fontId);
    }
    if (stored == fonts.end()) return {};
    auto& [font, size] = stored->second;
    if (font && size == tagSIZE{}) fontSize(font, &size);
    return size;
}

CTFontRef ZeFontManagerMacImpl::createFontFor(int fontId)
{
    if (fontId < 0 || fontId >= static_cast<int>(std::size(kFonts))) return nullptr;
    const auto stored = fonts.find(fontId);
    if (stored != fonts.end()) return stored->second.first;
    const FontFacts& facts = kFonts[fontId];
    auto font = CTFontCreateWithName(NSString::string(facts.name).get(), facts.size);
    if (!font) return nullptr;
    tagSIZE sample;
    fontSize(font, &sample);
    return fonts.try_emplace(fontId, std::move(font), sample).first->second.first;
}

void ZeFontManagerMacImpl::fontSize(CTFontRef font, tagSIZE* size) { sizeWithFont(L"0", font, nullptr, size); }

void ZeFontManagerMacImpl::sizeWithFont(const ZeString& text, CTFontRef font, CGContextRef, tagSIZE* size)
{
    if (!size) return;
    const NSAutoreleasePool pool;
    const NSString* string = text;
    const auto line = CTLineCreate(string->units(), font);
    const CGRect bounds = CTLineGetImageBounds(line, NSGraphicsContext::currentContext());
    *size = {RoundedUp(bounds.size.width), RoundedUp(bounds.size.height)};
}
