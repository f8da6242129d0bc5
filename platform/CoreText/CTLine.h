#pragma once

/// Fonts, and one line of shaped text.
///
/// The fonts come from a private configuration with exactly the files that the package depends on, so that every machine
/// draws and measures the same. Sizes and measures are in user space units; text isn't hinted, so measures scale.

#include "CoreGraphics/CGContext.h"
#include "Foundation/NSString.h"

#include <string_view>
#include <vector>

class CTFont;
class CTLine;
using CTFontRef = const CTFont*;
using CTLineRef = const CTLine*;

/// @param name  "Lucida Grande", "Lucida Grande-Bold", "Monaco" or "Times Roman"; any other gives the first of these
/// @param size  units of the em square
RetainPtr<CTFont> CTFontCreateWithName(const NSString* name, CGFloat size);
CGFloat CTFontGetSize(CTFontRef font);
CGFloat CTFontGetAscent(CTFontRef font);  ///< above the baseline
CGFloat CTFontGetDescent(CTFontRef font); ///< below the baseline, positive

/// Shapes `text` as one line; line ends in it draw as nothing. Measuring a kept line costs nothing.
RetainPtr<CTLine> CTLineCreate(std::u16string_view text, CTFontRef font);

struct CTLineBounds {
    CGFloat width = 0; ///< sum of the advances
    CGFloat ascent = 0;
    CGFloat descent = 0;
};
CTLineBounds CTLineGetTypographicBounds(CTLineRef line);

/// Draws with the baseline starting at `origin`.
void CTLineDraw(CTLineRef line, CGContextRef context, CGPoint origin, CGColorRef color);

/// The x of the caret before the UTF-16 unit `index`, from the line's start; the end for an index past the text.
CGFloat CTLineGetOffsetForStringIndex(CTLineRef line, std::size_t index);
/// The caret position (UTF-16 index) nearest to `x`.
std::size_t CTLineGetStringIndexForPosition(CTLineRef line, CGFloat x);
/// The spans, from the line's start, that the units from `start` to `end` cover: one a run of a direction.
struct CTLineSpan {
    CGFloat x, width;
};
std::vector<CTLineSpan> CTLineGetSelectionSpans(CTLineRef line, std::size_t start, std::size_t end);

/// Where a caret may stand, ascending UTF-16 indices: 0 and the end included, never inside a character that people see as one.
std::vector<std::size_t> CTLineGetCaretPositions(CTLineRef line);
/// The ranges of the words, for word moves and double clicks.
struct CTLineWord {
    std::size_t start, end;
};
std::vector<CTLineWord> CTLineGetWords(CTLineRef line);

/// The longest beginning of `text` that, with an ellipsis behind it, is at most `width` wide; `text` itself where it fits.
std::u16string CTTruncatedEnd(std::u16string_view text, CTFontRef font, CGFloat width);
