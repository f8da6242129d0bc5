#pragma once

/// What the sources of this folder share: holders for Pango's objects, and what the public classes hide.

#include "CoreText/CTGlyphRuns.h"
#include "CoreText/CTLine.h"

#include <pango/pango.h>

#include <algorithm>
#include <memory>

template <auto Release> struct Releaser {
    void operator()(auto* object) const { Release(object); }
};
using PangoText = std::unique_ptr<PangoLayout, Releaser<g_object_unref>>;
using PangoDescription = std::unique_ptr<PangoFontDescription, Releaser<pango_font_description_free>>;

struct CTFont::Contents {
    CGFloat size;
    PangoDescription description;
    CGFloat ascent, descent;
};

/// UTF-16 text as Pango wants it, and the way back.
struct CTShapedText {
    explicit CTShapedText(std::u16string_view units);

    std::string utf8;
    std::vector<int> byteOfUnit; ///< where each unit's character starts; one more entry for the end

    std::size_t length() const { return byteOfUnit.size() - 1; }
    int byteAt(std::size_t unit) const { return byteOfUnit[std::min(unit, length())]; }
    std::size_t unitAt(int byte) const; ///< of the first unit of the character at, or next after, `byte`
};

struct CTLine::Contents {
    RetainPtr<const CTFont> font;
    std::u16string units; ///< what was shaped
    CTShapedText text;
    PangoText layout;
    PangoLayoutLine* line; ///< belongs to `layout`
    CTLineBounds bounds;
    CTGlyphRuns glyphs; ///< of `line`

    CGFloat size() const { return font->contents().size; }
};

/// The face that a font name stands for.
PangoDescription CTDescriptionForName(std::string_view name, CGFloat size);
/// A line of text in the private fonts.
PangoText CTLayoutOf(const PangoFontDescription* description, std::string_view utf8);
CTLineBounds CTBoundsOf(PangoLayoutLine* line);

inline CGFloat CTUnitsFromPango(int value) { return static_cast<CGFloat>(value) / PANGO_SCALE; }
