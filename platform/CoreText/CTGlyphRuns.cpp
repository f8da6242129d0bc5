#include "CoreText/CTGlyphRuns.h"

namespace {

double UnitsOf(int pango) { return static_cast<double>(pango) / PANGO_SCALE; }

} // namespace

CTGlyphRuns::CTGlyphRuns(PangoLayoutLine* line)
{
    int x = 0;
    for (const GSList* entry = line->runs; entry; entry = entry->next) {
        const auto& run = *static_cast<const PangoLayoutRun*>(entry->data);
        if (!add(run, x)) {
            mRuns.clear();
            mDrawnByPango = line;
            return;
        }
        x += pango_glyph_string_get_width(run.glyphs);
    }
}

/// @return false where a letter is missing
bool CTGlyphRuns::add(const PangoLayoutRun& run, int start)
{
    cairo_scaled_font_t* const font =
        pango_cairo_font_get_scaled_font(reinterpret_cast<PangoCairoFont*>(run.item->analysis.font));
    if (!font || cairo_scaled_font_status(font) != CAIRO_STATUS_SUCCESS) return false;
    Run& added = mRuns.emplace_back();
    added.font.reset(cairo_scaled_font_reference(font));
    for (int i = 0; i < run.glyphs->num_glyphs; ++i) {
        const PangoGlyphInfo& info = run.glyphs->glyphs[i];
        if (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) return false;
        if (info.glyph != PANGO_GLYPH_EMPTY)
            added.glyphs.push_back(
                {info.glyph, UnitsOf(start + info.geometry.x_offset), UnitsOf(info.geometry.y_offset)});
        start += info.geometry.width;
    }
    return true;
}

void CTGlyphRuns::show(cairo_t* cairo) const
{
    if (mDrawnByPango) return pango_cairo_show_layout_line(cairo, mDrawnByPango);
    double x = 0, y = 0;
    cairo_get_current_point(cairo, &x, &y);
    std::vector<cairo_glyph_t> placed;
    for (const Run& run : mRuns) {
        placed = run.glyphs;
        for (cairo_glyph_t& glyph : placed) {
            glyph.x += x;
            glyph.y += y;
        }
        cairo_set_scaled_font(cairo, run.font.get());
        cairo_show_glyphs(cairo, placed.data(), static_cast<int>(placed.size()));
    }
}
