#include "CoreText/CTPango.h"

namespace {

CGFloat widthOf(CTLineRef line) { return CTLineGetTypographicBounds(line).width; }

/// The longest of the cuts that keep 0 to `most` characters, `cut(0)` the shortest; null where none is at most `width`
/// wide. Growing steps first, so that a long text is never shaped anew as a whole.
template <typename Cut> RetainPtr<CTLine> longestCut(std::size_t most, CTFontRef font, CGFloat width, Cut cut)
{
    RetainPtr<CTLine> best;
    auto fits = [&](std::size_t kept) {
        auto line = CTLineCreate(cut(kept), font);
        if (!(widthOf(line) <= width)) return false;
        best = std::move(line);
        return true;
    };
    if (!fits(0)) return nullptr;
    std::size_t fitting = 0, tooLong = 1;
    while (tooLong <= most && fits(tooLong)) {
        fitting = tooLong;
        tooLong *= 2;
    }
    tooLong = std::min(tooLong, most + 1);
    while (tooLong - fitting > 1) {
        const std::size_t middle = fitting + (tooLong - fitting) / 2;
        (fits(middle) ? fitting : tooLong) = middle;
    }
    return best;
}

} // namespace

RetainPtr<const CTLine> CTLineCreateTruncatedLine(CTLineRef line, CGFloat width, CTLineTruncationType type,
                                                  CTLineRef token)
{
    if (!line || widthOf(line) <= width) return line;
    const std::u16string_view text = line->contents().units;
    const std::u16string mark = token ? token->contents().units : std::u16string();
    const std::vector<std::size_t> carets = CTLineGetCaretPositions(line);
    const std::size_t most = carets.size() - 1;
    return longestCut(most, line->contents().font, width, [&](std::size_t kept) {
        const std::size_t last = type == kCTLineTruncationMiddle ? kept / 2 : 0;
        std::u16string cut(text.substr(0, carets[kept - last]));
        return cut.append(mark).append(text.substr(carets[most - last]));
    });
}

std::u16string CTTruncatedEnd(std::u16string_view text, CTFontRef font, CGFloat width)
{
    const RetainPtr<CTLine> whole = CTLineCreate(text, font);
    if (!whole || widthOf(whole) <= width) return std::u16string(text);
    const RetainPtr<CTLine> ellipsis = CTLineCreate(u"\u2026", font);
    const auto cut = CTLineCreateTruncatedLine(whole, width, kCTLineTruncationEnd, ellipsis);
    return cut ? cut->contents().units : std::u16string();
}
