// The private configuration: which file stands behind which name, and how text is rendered.

#include "CoreText/CTPango.h"
#include "Foundation/NSLog.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <filesystem>

namespace {

using FontConfig = std::unique_ptr<FcConfig, Releaser<FcConfigDestroy>>;
using FontPattern = std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>>;
using FontObjects = std::unique_ptr<FcObjectSet, Releaser<FcObjectSetDestroy>>;
using FontList = std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>>;
using FontOptions = std::unique_ptr<cairo_font_options_t, Releaser<cairo_font_options_destroy>>;
using FontMap = std::unique_ptr<PangoFontMap, Releaser<g_object_unref>>;
using FontContext = std::unique_ptr<PangoContext, Releaser<g_object_unref>>;

struct Face {
    std::string_view name;
    const char* family;
    PangoWeight weight;
    const char* file;
};
constexpr Face kFaces[] = {
    {"Lucida Grande", "DejaVu Sans", PANGO_WEIGHT_NORMAL, "DejaVuSans.ttf"}, // stands in for every other name
    {"Lucida Grande-Bold", "DejaVu Sans", PANGO_WEIGHT_BOLD, "DejaVuSans-Bold.ttf"},
    {"Monaco", "DejaVu Sans Mono", PANGO_WEIGHT_NORMAL, "DejaVuSansMono.ttf"},
    {"Times Roman", "Liberation Serif", PANGO_WEIGHT_NORMAL, "LiberationSerif-Regular.ttf"},
};

/// What the others have no letters for. It is only read with the first such letter: that takes as long as a whole
/// window.
constexpr Face kEastAsianFace{"", "VL PGothic", PANGO_WEIGHT_NORMAL, "VL-PGothic-Regular.ttf"};

constexpr const char* kFontFolders[] = {
    "/usr/share/fonts/truetype/dejavu/",
    "/usr/share/fonts/truetype/liberation2/",
    "/usr/share/fonts/truetype/liberation/",
    "/usr/share/fonts/truetype/vlgothic/",
};

const FcChar8* fcText(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

std::string fileInKnownFolders(const Face& face)
{
    for (const char* folder : kFontFolders) {
        std::string path = std::string(folder) + face.file;
        std::error_code failure;
        if (std::filesystem::is_regular_file(path, failure)) return path;
    }
    return {};
}

std::string fileOfSystemFamily(const Face& face)
{
    const FontConfig system(FcInitLoadConfigAndFonts());
    const FontPattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, fcText(face.family));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, face.weight == PANGO_WEIGHT_BOLD ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted.get(), FC_SLANT, FC_SLANT_ROMAN);
    const FontObjects objects(FcObjectSetBuild(FC_FILE, nullptr));
    const FontList found(FcFontList(system.get(), wanted.get(), objects.get()));
    FcChar8* file = nullptr;
    if (!found || found->nfont < 1 || FcPatternGetString(found->fonts[0], FC_FILE, 0, &file) != FcResultMatch)
        return {};
    return reinterpret_cast<const char*>(file);
}

bool addFace(FcConfig* config, const Face& face)
{
    std::string file = fileInKnownFolders(face);
    if (file.empty()) file = fileOfSystemFamily(face);
    if (!file.empty() && FcConfigAppFontAddFile(config, fcText(file.c_str()))) return true;
    NSLog("CoreText: neither the font file %s nor its family \"%s\" was found; another font stands in for it",
          face.file, face.family);
    return false;
}

FontConfig privateFonts()
{
    FontConfig config(FcConfigCreate());
    bool any = false;
    for (const Face& face : kFaces) any = addFace(config.get(), face) || any;
    if (!any) config.reset(FcInitLoadConfigAndFonts());
    return config;
}

/// Whether there is anything from U+3000 to U+DFFF or U+F000 to U+FFFF: kana, ideographs and their punctuation.
bool hasEastAsianLetters(std::string_view utf8)
{
    return std::any_of(utf8.begin(), utf8.end(), [](char byte) {
        const auto lead = static_cast<unsigned char>(byte);
        return (lead >= 0xE3 && lead <= 0xED) || lead == 0xEF;
    });
}

/// One for the process, made with its first font.
class FontSet {
public:
    FontSet() : mConfig(privateFonts()), mMap(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT))
    {
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(mMap.get()), mConfig.get());
        pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(mMap.get()), 72); // a point is a unit
        mContext.reset(pango_font_map_create_context(mMap.get()));
        const FontOptions options(cairo_font_options_create());
        cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
        pango_cairo_context_set_font_options(mContext.get(), options.get());
        pango_context_set_round_glyph_positions(mContext.get(), FALSE);
        pango_context_set_language(mContext.get(), pango_language_from_string("en"));
        pango_context_set_base_dir(mContext.get(), PANGO_DIRECTION_LTR);
    }

    /// The context that has the letters of that text, as far as there are any.
    PangoContext* contextFor(std::string_view utf8)
    {
        if (!mHasEastAsian && hasEastAsianLetters(utf8)) {
            mHasEastAsian = true;
            if (addFace(mConfig.get(), kEastAsianFace)) pango_fc_font_map_config_changed(PANGO_FC_FONT_MAP(mMap.get()));
        }
        return mContext.get();
    }

private:
    bool mHasEastAsian = false;
    FontConfig mConfig;
    FontMap mMap;
    FontContext mContext;
};

} // namespace

PangoDescription CTDescriptionForName(std::string_view name, CGFloat size)
{
    const Face* face = &kFaces[0];
    for (const Face& candidate : kFaces)
        if (candidate.name == name) face = &candidate;
    PangoDescription description(pango_font_description_new());
    pango_font_description_set_family(description.get(), face->family);
    pango_font_description_set_weight(description.get(), face->weight);
    pango_font_description_set_absolute_size(description.get(), size * PANGO_SCALE);
    return description;
}

PangoText CTLayoutOf(const PangoFontDescription* description, std::string_view utf8)
{
    static FontSet fonts;
    PangoText layout(pango_layout_new(fonts.contextFor(utf8)));
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_font_description(layout.get(), description);
    pango_layout_set_text(layout.get(), utf8.data(), static_cast<int>(utf8.size()));
    return layout;
}
