#pragma once

/// The letters of a line as the drawing library takes them, found once: a line is drawn more often than it is made.

#include <memory>
#include <vector>

#include <pango/pangocairo.h>

class CTGlyphRuns {
public:
    explicit CTGlyphRuns(PangoLayoutLine* line);

    /// Draws in the source of `cairo`, from its current point on.
    void show(cairo_t* cairo) const;

private:
    struct Destroyer {
        void operator()(cairo_scaled_font_t* font) const { cairo_scaled_font_destroy(font); }
    };
    struct Run {
        std::unique_ptr<cairo_scaled_font_t, Destroyer> font;
        std::vector<cairo_glyph_t> glyphs; ///< from the start of the line
    };

    bool add(const PangoLayoutRun& run, int start);

    std::vector<Run> mRuns;
    PangoLayoutLine* mDrawnByPango = nullptr; // where a letter is missing, which is shown as a box with its number
};
