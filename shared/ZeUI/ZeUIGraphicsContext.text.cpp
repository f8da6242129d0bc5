// Text, and the fonts for it.

#include "ZeUIGraphicsContext.h"

#include "CoreFoundation/CFString.h"
#include "CoreText/CTLine.h"
#include "ZeFontManager.h"
#include "ZeTruncate.h"
#include "ZeUIColor.h"

namespace {

using Line = RetainPtr<const CTLine>;

/// Null where an element is no character.
Line LineOf(const ZeString& text, CTFontRef font)
{
    const auto string =
        CFStringCreateWithBytes(reinterpret_cast<const std::uint8_t*>(text.data()),
                                static_cast<CFIndex>(text.size() * sizeof(wchar_t)), kCFStringEncodingUTF32LE, false);
    return string ? CTLineCreate(string->units(), font) : nullptr;
}

bool FirstCharacterFits(const ZeString& text, CTFontRef font, CGContextRef context, double width)
{
    tagSIZE first;
    ZeFontManager::sharedFontManager().sizeWithFont(text.substr(0, 1), font, context, &first);
    return first.width < width;
}

/// Null where nothing is to be drawn.
Line Trimmed(const Line& line, CTFontRef font, double width, ZeGraphicsContext::_eTrim trim)
{
    const bool marked = trim >= ZeGraphicsContext::eTrimEndEllipsis && trim <= ZeGraphicsContext::eTrimMiddleEllipsis;
    const Line ellipsis = marked ? LineOf(L"\u2026", font) : nullptr;
    const bool middle = trim == ZeGraphicsContext::eTrimMiddleEllipsis;
    return CTLineCreateTruncatedLine(line, width + 2.0, middle ? kCTLineTruncationMiddle : kCTLineTruncationEnd,
                                     ellipsis);
}

double BaselineIn(const ZeRect& rect, const CTLineBounds& bounds, double inkHeight, ZeGraphicsContext::_eVAlign align)
{
    const double top = rect.y + bounds.ascent - bounds.descent;
    switch (align) {
    case ZeGraphicsContext::eVAlignTop:
        return top;
    case ZeGraphicsContext::eVAlignMiddle:
        return top + (rect.height - inkHeight) * 0.5;
    case ZeGraphicsContext::eVAlignBottom:
        return top + (rect.height - inkHeight);
    default:
        return rect.y + rect.height - bounds.descent;
    }
}

} // namespace

void ZeGraphicsContext::ZeDrawString(const ZeString& text, ZeRect rect, ZeGuiDefs::Color color, int fontId,
                                     _eHAlign hAlign, _eVAlign vAlign, _eTrim trim)
{
    const CTFontRef font = context && !text.empty() ? GetFont(fontId) : nullptr;
    Line line = font ? LineOf(text, font) : nullptr;
    if (!line) return;
    CGContextSetTextMatrix(context, {1, 0, 0, -1, 0, 0});
    const CTLineBounds bounds = CTLineGetTypographicBounds(line);
    const CGSize ink = CTLineGetImageBounds(line, context).size;
    const double x = rect.x + (hAlign == eHAlignCenter ? (rect.width - ink.width) * 0.5 : 0);
    if (trim != eTrimNone) {
        if (!FirstCharacterFits(text, font, context, rect.width)) return;
        line = Trimmed(line, font, rect.width, trim);
    }
    CGContextSetTextPosition(context, x, BaselineIn(rect, bounds, ink.height, vAlign));
    CTLineDraw(line, context, ZeColorFromWord(color).get());
}

CTFontRef ZeGraphicsContext::GetFont(int fontId) { return ZeFontManager::sharedFontManager().fontFor(fontId); }

tagSIZE ZeGraphicsContext::GetFontSize(int fontId) { return ZeFontManager::sharedFontManager().fontSize(fontId); }

tagSIZE ZeGraphicsContext::GetSizeWithFont(const ZeString& text, int fontId) const
{
    tagSIZE size;
    const CTFontRef font = context ? GetFont(fontId) : nullptr;
    if (font) ZeFontManager::sharedFontManager().sizeWithFont(text, font, context, &size);
    return size;
}

tagSIZE ZeGraphicsContext::GetSizeWithFontForScreen(const ZeString& text, int fontId)
{
    const tagSIZE sample = GetFontSize(fontId);
    const double width = static_cast<double>(sample.width) * static_cast<double>(text.size()) * 1.2;
    return {static_cast<std::int32_t>(ZeTruncate(width)), sample.height};
}
