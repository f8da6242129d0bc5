#include "CoreGraphics/CGContextPrivate.h"
#include "CoreText/CTPango.h"

#include <pango/pangocairo.h>

#include <cmath>
#include <list>

namespace {

/// Pango counts in 1024ths with 32 bits: a line of more than about two million units would overflow.
std::u16string_view shapeable(std::u16string_view text, CTFontRef font)
{
    constexpr CGFloat kWidestLine = 1 << 21;
    return text.substr(0, static_cast<std::size_t>(kWidestLine / CTFontGetSize(font)));
}

int pangoFromUnits(CGFloat x)
{
    constexpr CGFloat kMost = 1 << 20;
    return std::isnan(x) ? 0 : static_cast<int>(std::clamp(x, -kMost, kMost) * PANGO_SCALE);
}

/// Calls `visit(unit, attribute)` for each character and the end.
template <typename Visit> void forEachBoundary(const CTLine::Contents& line, Visit visit)
{
    int count = 0;
    const PangoLogAttr* attributes = pango_layout_get_log_attrs_readonly(line.layout.get(), &count);
    const std::vector<int>& bytes = line.text.byteOfUnit;
    std::size_t unit = 0;
    for (int i = 0; i < count && unit < bytes.size(); ++i) {
        visit(unit, attributes[i]);
        const int byte = bytes[unit];
        while (unit < bytes.size() && bytes[unit] == byte) ++unit;
    }
}

/// Whether the library below can draw there without giving up on the context for good.
bool isWithinReach(cairo_t* cairo, CGPoint origin, CGFloat size)
{
    constexpr double kFarthest = 1 << 21, kLargest = 1 << 15; // device pixels
    double right = size, down = size;
    cairo_user_to_device(cairo, &origin.x, &origin.y);
    cairo_user_to_device_distance(cairo, &right, &down);
    return std::abs(origin.x) < kFarthest && std::abs(origin.y) < kFarthest && std::hypot(right, down) < kLargest;
}

CGFloat largestFactor(const CGAffineTransform& m) { return std::max(std::hypot(m.a, m.b), std::hypot(m.c, m.d)); }

/// Whether the matrix has an inverse, and letters that are no needles.
bool isUsableForText(const CGAffineTransform& m)
{
    const CGFloat area = std::abs(m.a * m.d - m.b * m.c), largest = largestFactor(m);
    return area > 1e-6 && largest < 1e4 && area > 1e-3 * largest * largest;
}

} // namespace

CTLine::CTLine(std::unique_ptr<const Contents> contents) : mContents(std::move(contents)) {}
CTLine::~CTLine() = default;

CTLineBounds CTBoundsOf(PangoLayoutLine* line)
{
    PangoRectangle logical;
    pango_layout_line_get_extents(line, nullptr, &logical);
    return {CTUnitsFromPango(logical.width), CTUnitsFromPango(PANGO_ASCENT(logical)),
            CTUnitsFromPango(PANGO_DESCENT(logical))};
}

namespace {

/// The lines that were made last, newest first: most texts are measured, drawn, and drawn again.
using RecentLines = std::list<RetainPtr<CTLine>>;

RecentLines& OwnRecentLines()
{
    static thread_local RecentLines lines;
    return lines;
}

RetainPtr<CTLine> RecentLine(std::u16string_view units, CTFontRef font)
{
    RecentLines& lines = OwnRecentLines();
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const RetainPtr<CTLine>& line) {
        return line->contents().font.get() == font && line->contents().units == units;
    });
    if (found == lines.end()) return nullptr;
    lines.splice(lines.begin(), lines, found);
    return lines.front();
}

void Remember(const RetainPtr<CTLine>& line)
{
    constexpr std::size_t kMostLines = 48, kLongest = 128;
    RecentLines& lines = OwnRecentLines();
    if (line->contents().units.size() > kLongest) return;
    lines.push_front(line);
    if (lines.size() > kMostLines) lines.pop_back();
}

} // namespace

RetainPtr<CTLine> CTLineCreate(std::u16string_view text, CTFontRef font)
{
    if (!font) return nullptr;
    const std::u16string_view units = shapeable(text, font);
    if (auto line = RecentLine(units, font)) return line;
    CTShapedText shaped(units);
    PangoText layout = CTLayoutOf(font->contents().description.get(), shaped.utf8);
    PangoLayoutLine* line = pango_layout_get_line_readonly(layout.get(), 0);
    auto made = RetainPtr<CTLine>::adopt(new CTLine(std::make_unique<CTLine::Contents>(
        CTLine::Contents{font, std::u16string(units), std::move(shaped), std::move(layout), line, CTBoundsOf(line),
                         CTGlyphRuns(line)})));
    Remember(made);
    return made;
}

CTLineBounds CTLineGetTypographicBounds(CTLineRef line) { return line ? line->contents().bounds : CTLineBounds{}; }

void CTLineDraw(CTLineRef line, CGContextRef context, CGPoint origin, CGColorRef color)
{
    if (!line) return;
    CGContextDrawInColor(context, color, [&](cairo_t* cairo) {
        if (!isWithinReach(cairo, origin, line->contents().size())) return;
        cairo_move_to(cairo, origin.x, origin.y);
        line->contents().glyphs.show(cairo);
    });
}

void CTLineDraw(CTLineRef line, CGContextRef context, CGColorRef color)
{
    if (!line) return;
    const CGAffineTransform m = CGContextGetTextMatrix(context);
    if (!isUsableForText(m)) return;
    CGContextDrawInColor(context, color, [&](cairo_t* cairo) {
        if (!isWithinReach(cairo, {m.tx, m.ty}, line->contents().size() * largestFactor(m))) return;
        const cairo_matrix_t upright{m.a, m.b, -m.c, -m.d, m.tx, m.ty}; // the library below draws y-down letters
        cairo_transform(cairo, &upright);
        cairo_move_to(cairo, 0, 0);
        line->contents().glyphs.show(cairo);
    });
}

CGRect CTLineGetImageBounds(CTLineRef line, CGContextRef context)
{
    if (!line) return {};
    PangoRectangle ink;
    pango_layout_line_get_extents(line->contents().line, &ink, nullptr);
    const CGFloat x = CTUnitsFromPango(ink.x), width = CTUnitsFromPango(ink.width);
    const CGFloat height = CTUnitsFromPango(ink.height), bottom = -CTUnitsFromPango(ink.y) - height; // letters are y-up
    const CGAffineTransform m = CGContextGetTextMatrix(context);
    return {{m.tx + std::min(m.a * x, m.a * (x + width)) + std::min(m.c * bottom, m.c * (bottom + height)),
             m.ty + std::min(m.b * x, m.b * (x + width)) + std::min(m.d * bottom, m.d * (bottom + height))},
            {std::abs(m.a) * width + std::abs(m.c) * height, std::abs(m.b) * width + std::abs(m.d) * height}};
}

CGFloat CTLineGetOffsetForStringIndex(CTLineRef line, std::size_t index)
{
    if (!line) return 0;
    PangoRectangle caret;
    pango_layout_get_cursor_pos(line->contents().layout.get(), line->contents().text.byteAt(index), &caret, nullptr);
    return CTUnitsFromPango(caret.x);
}

std::size_t CTLineGetStringIndexForPosition(CTLineRef line, CGFloat x)
{
    if (!line) return 0;
    int byte = 0, trailing = 0;
    pango_layout_line_x_to_index(line->contents().line, pangoFromUnits(x), &byte, &trailing);
    const std::size_t unit = line->contents().text.unitAt(byte);
    if (trailing == 0) return unit;
    const std::vector<std::size_t> carets = CTLineGetCaretPositions(line);
    const auto next = std::upper_bound(carets.begin(), carets.end(), unit);
    return next != carets.end() ? *next : line->contents().text.length();
}

std::vector<CTLineSpan> CTLineGetSelectionSpans(CTLineRef line, std::size_t start, std::size_t end)
{
    std::vector<CTLineSpan> spans;
    if (!line || start >= end) return spans;
    const CTShapedText& text = line->contents().text;
    int* ranges = nullptr;
    int count = 0;
    pango_layout_line_get_x_ranges(line->contents().line, text.byteAt(start), text.byteAt(end), &ranges, &count);
    const std::unique_ptr<int, Releaser<g_free>> owned(ranges);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const CGFloat left = CTUnitsFromPango(ranges[2 * i]), right = CTUnitsFromPango(ranges[2 * i + 1]);
        const bool touches = !spans.empty() && spans.back().x + spans.back().width == left;
        if (touches)
            spans.back().width += right - left;
        else if (right > left)
            spans.push_back({left, right - left});
    }
    return spans;
}

std::vector<std::size_t> CTLineGetCaretPositions(CTLineRef line)
{
    if (!line) return {0};
    std::vector<std::size_t> carets;
    forEachBoundary(line->contents(), [&](std::size_t unit, const PangoLogAttr& attribute) {
        if (attribute.is_cursor_position) carets.push_back(unit);
    });
    return carets;
}

std::vector<CTLineWord> CTLineGetWords(CTLineRef line)
{
    std::vector<CTLineWord> words;
    if (!line) return words;
    std::size_t start = 0;
    bool hasText = false; // between two boundaries there may also be a space or a comma
    forEachBoundary(line->contents(), [&](std::size_t unit, const PangoLogAttr& attribute) {
        if (attribute.is_word_boundary) {
            if (hasText) words.push_back({start, unit});
            start = unit;
            hasText = false;
        }
        if (attribute.is_word_start) hasText = true;
    });
    return words;
}
