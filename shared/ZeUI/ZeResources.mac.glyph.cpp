// Cells of image strips, plain and highlighted.

#include "ZeResources.mac.h"

#include "ZeUIBitmap.h"
#include "ZeUIGraphicsContext.h"

#include <optional>

namespace {

constexpr ZeGuiDefs::Color kWhite = 0xFFFFFFFF, kBlue = 0xFF0000FF;
constexpr double kFrameWidth = 1.0, kFrameDistance = 2.0;

/// None where that many cells don't fill the strip.
std::optional<int> CellWidth(const ZeBitmap& strip, int index, int count)
{
    const auto width = static_cast<int>(strip.GetWidth()), height = static_cast<int>(strip.GetHeight());
    if (count < 1) count = height > 0 ? width / height : 0;
    const int cell = count > 0 ? width / count : 0;
    if (cell == 0 || width % cell != 0 || index >= count) return std::nullopt;
    return cell;
}

tResCacheType GlyphType(tResCacheType kind, int index)
{
    return static_cast<tResCacheType>(kind | static_cast<std::uint32_t>(index));
}

/// Cells of one strip share a name.
ZeString GlyphName(const ZeBitmap& strip)
{
    return L"glyph " + std::to_wstring(CGImageGetSerialNumber(strip.GetImage()));
}

void* HandleOf(void* cached) { return static_cast<ZeBitmap*>(cached)->GetHandle(); }

/// Choice: the cell's picture appears in the frame, from a context of its own; the frame's own would only show white.
/// Test: ZeResourcesTest.HighlightsCellsInAFrame
CGImage* Framed(CGImageRef cell)
{
    ZeGraphicsContext canvas(cell, true);
    const ZeGraphicsContext picture(cell, true);
    const ZeRect all(static_cast<double>(CGImageGetWidth(cell)), static_cast<double>(CGImageGetHeight(cell)));
    ZeRect inner = all;
    inner.Deflate(kFrameDistance, kFrameDistance);
    canvas.ZeFillRectSolid(kWhite, all);
    canvas.ZeDrawImageToFit(inner, &picture, nullptr);
    canvas.ZeDrawRectangle(kBlue, all, kFrameWidth);
    return canvas.ZeCreateImageFromContext();
}

} // namespace

ZeResult ZeResourcesMac::GetGlyph(void* image, int index, int count, void** glyph, void** hiliteGlyph)
{
    if (!mCache || !image || index < 0 || !glyph) return kZeInvalidParameter;
    const auto& strip = *static_cast<ZeBitmap*>(image);
    if (!strip.GetImage()) return kZeInvalidParameter;
    *glyph = nullptr;
    const std::optional<int> cellWidth = CellWidth(strip, index, count);
    if (!cellWidth) return kZeInvalidParameter;
    const ZeString name = GlyphName(strip);
    *glyph = PlainGlyph(name, strip, index, *cellWidth);
    if (!*glyph) return kZeGlyphNotMade;
    if (!hiliteGlyph) return kZeSuccess;
    *hiliteGlyph = HiliteGlyph(name, static_cast<CGImageRef>(*glyph), index);
    return *hiliteGlyph ? kZeSuccess : kZeGlyphNotMade;
}

void* ZeResourcesMac::PlainGlyph(const ZeString& name, const ZeBitmap& strip, int index, int cellWidth)
{
    const tResCacheType type = GlyphType(eResCacheGlyph, index);
    if (void* const cached = mCache->GetResourceFromCache(name.c_str(), type, nullptr)) return HandleOf(cached);
    std::unique_ptr<ZeBitmap> cell(
        strip.ZeCreateSubBitmap(cellWidth * index, 0, cellWidth, static_cast<int>(strip.GetHeight())));
    if (!cell || !cell->GetHandle()) return nullptr;
    mCache->AddItem(name.c_str(), -1, cell.get(), true, type);
    return cell.release()->GetHandle();
}

void* ZeResourcesMac::HiliteGlyph(const ZeString& name, CGImageRef cell, int index)
{
    const tResCacheType type = GlyphType(eResCacheGlyphHilite, index);
    if (void* const cached = mCache->GetResourceFromCache(name.c_str(), type, nullptr)) return HandleOf(cached);
    CGImage* framed = Framed(cell);
    if (!framed) return nullptr;
    return mCache->AllocAddGlyphItem(name.c_str(), sizeof(ZeBitmap), framed, type)->GetHandle();
}
