#pragma once

/// One line of shaped text: measures, caret positions, drawing, truncation.
///
/// Indices count UTF-16 units and may be anything: one past the text is the end, one inside a surrogate pair is the
/// pair's. Measures are in user space units from the line's start. Any text is taken: line ends and other control
/// characters draw as nothing, a tab as a space, an unpaired surrogate as U+FFFD. Text beyond two million divided by
/// the font's size (at size 12 more than 170000 units) isn't shaped. A null line has no text.

#include "CoreGraphics/CGContext.h"
#include "CoreText/CTFont.h"

#include <string>
#include <string_view>
#include <vector>

class CTLine final : public NSObject {
public:
    struct Contents; // complete inside this folder only
    explicit CTLine(std::unique_ptr<const Contents> contents);
    const Contents& contents() const { return *mContents; }

private:
    ~CTLine() override;

    std::unique_ptr<const Contents> mContents;
};
using CTLineRef = const CTLine*;

/// Shapes `text`. Null without a font. Measuring a kept line costs nothing.
RetainPtr<CTLine> CTLineCreate(std::u16string_view text, CTFontRef font);

struct CTLineBounds {
    CGFloat width = 0; ///< sum of the advances
    CGFloat ascent = 0;
    CGFloat descent = 0;
};
CTLineBounds CTLineGetTypographicBounds(CTLineRef line);

/// Draws with the baseline starting at `origin`; nothing where a letter would be over 32768 pixels.
void CTLineDraw(CTLineRef line, CGContextRef context, CGPoint origin, CGColorRef color);

/// Draws from the context's text position on, through its text matrix. Nothing for a matrix that flattens letters to
/// less than a thousandth of their length.
void CTLineDraw(CTLineRef line, CGContextRef context, CGColorRef color);
/// The inked area, in user space, of that drawing; no extent where there is no ink. For a null context it is at (0, 0)
/// with y up: "0" in "Lucida Grande" at 12 is at (0.79, -0.17), 6.05 wide and 9.08 high.
CGRect CTLineGetImageBounds(CTLineRef line, CGContextRef context);

/// The x of the caret before the UTF-16 unit `index`, from the line's start; the end for an index past the text.
CGFloat CTLineGetOffsetForStringIndex(CTLineRef line, std::size_t index);
/// The caret position (UTF-16 index) nearest to `x`.
std::size_t CTLineGetStringIndexForPosition(CTLineRef line, CGFloat x);
/// The spans, from the line's start, that the units from `start` to `end` cover: one for each run of a direction, from
/// left to right; none where the range is empty.
struct CTLineSpan {
    CGFloat x, width;
};
std::vector<CTLineSpan> CTLineGetSelectionSpans(CTLineRef line, std::size_t start, std::size_t end);

/// Where a caret may stand, ascending UTF-16 indices: 0 and the end included, never inside a character that people see
/// as one.
std::vector<std::size_t> CTLineGetCaretPositions(CTLineRef line);
/// The ranges of the words, for word moves and double clicks: {0, 3} and {5, 8} for "one, 3.5".
struct CTLineWord {
    std::size_t start, end;
};
std::vector<CTLineWord> CTLineGetWords(CTLineRef line);

enum CTLineTruncationType { kCTLineTruncationEnd = 1, kCTLineTruncationMiddle = 2 };
/// The line itself where it is at most `width` wide, else the longest line of its first characters (and its last ones,
/// for the middle) with the text of `token` where something was cut. A null token stands for no text. Null where not
/// even the token fits.
RetainPtr<const CTLine> CTLineCreateTruncatedLine(CTLineRef line, CGFloat width, CTLineTruncationType type,
                                                  CTLineRef token);
/// The longest beginning of `text` that, with an ellipsis behind it, is at most `width` wide; `text` itself where it
/// fits, nothing where not even the ellipsis does.
std::u16string CTTruncatedEnd(std::u16string_view text, CTFontRef font, CGFloat width);
