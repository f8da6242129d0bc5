#include "CoreText/CTLine.h"

std::u16string CTTruncatedEnd(std::u16string_view text, CTFontRef font, CGFloat width)
{
    const RetainPtr<CTLine> whole = CTLineCreate(text, font);
    if (CTLineGetTypographicBounds(whole).width <= width) return std::u16string(text);
    const std::vector<std::size_t> carets = CTLineGetCaretPositions(whole);
    auto cut = [&](std::size_t caret) { return std::u16string(text.substr(0, carets[caret])) + u'\u2026'; };
    auto fits = [&](std::size_t caret) {
        const RetainPtr<CTLine> line = CTLineCreate(cut(caret), font);
        return CTLineGetTypographicBounds(line).width <= width;
    };
    if (!fits(0)) return {};

    // growing steps first, so that a long text is never shaped anew as a whole
    std::size_t fitting = 0, tooLong = 1;
    while (tooLong < carets.size() && fits(tooLong)) {
        fitting = tooLong;
        tooLong *= 2;
    }
    tooLong = std::min(tooLong, carets.size());
    while (tooLong - fitting > 1) {
        const std::size_t middle = fitting + (tooLong - fitting) / 2;
        (fits(middle) ? fitting : tooLong) = middle;
    }
    return cut(fitting);
}
