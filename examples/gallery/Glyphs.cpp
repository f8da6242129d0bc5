#include "Sections.h"

#include <stdexcept>
#include <utility>

namespace {

/// The cell of a strip and its highlighted version.
std::pair<CGImageRef, CGImageRef> glyphOf(Samples& samples, int index, int count)
{
    void *plain = nullptr, *hilite = nullptr;
    if (samples.resources.GetGlyph(samples.strip, index, count, &plain, &hilite) != kZeSuccess)
        throw std::runtime_error("strip.png: no cell " + std::to_string(index) + " of " + std::to_string(count));
    return {static_cast<CGImageRef>(plain), static_cast<CGImageRef>(hilite)};
}

void drawCells(ZeGraphicsContext& context, Samples& samples)
{
    for (int i = 0; i < 4; ++i) drawImage(context, glyphOf(samples, i, 4).first, 5 + 36 * i, 26);
}

void drawHighlighted(ZeGraphicsContext& context, Samples& samples)
{
    for (int i = 0; i < 4; ++i) drawImage(context, glyphOf(samples, i, 4).second, 5 + 36 * i, 26);
}

void drawEnlarged(ZeGraphicsContext& context, Samples& samples)
{
    const ZeGraphicsContext plain(glyphOf(samples, 0, 4).first, true), hilite(glyphOf(samples, 0, 4).second, true);
    context.ZeDrawImageToFit(ZeRect(8, 10, 64, 64), &plain, nullptr);
    context.ZeDrawImageToFit(ZeRect(78, 10, 64, 64), &hilite, nullptr);
}

template <bool stripMnemonics> void drawTitle(ZeGraphicsContext& context, Samples& samples)
{
    ZeString title;
    samples.resources.GetResString(L"IDS_SAVE", title, stripMnemonics);
    context.ZeDrawString(title, ZeRect(kFieldWidth, kFieldHeight), kBlack, 0, ZeGraphicsContext::eHAlignCenter,
                         ZeGraphicsContext::eVAlignMiddle, ZeGraphicsContext::eTrimEndEllipsis);
}

constexpr Field kFields[] = {
    {L"GetResImage", L"a strip of 128 by 32",
     [](ZeGraphicsContext& context, Samples& samples) { drawImage(context, samples.strip->GetImage(), 11, 26); },
     On::pixels},
    {L"GetGlyph", L"its four cells", drawCells, On::pixels},
    {L"GetGlyph, highlighted", L"scaled into a blue frame", drawHighlighted, On::pixels},
    {L"GetGlyph", L"a cell and its highlight", drawEnlarged},
    {L"GetResString", L"as the table has it", drawTitle<false>},
    {L"GetResString", L"without the marks of keys", drawTitle<true>},
};

} // namespace

Section glyphs() { return {L"Glyph cells and texts of a bundle", kFields}; }
