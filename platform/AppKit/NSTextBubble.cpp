#include "AppKit/NSTextBubble.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kPadding = 8, kPointer = 6, kGap = 4, kMargin = 4, kMostWidth = 320, kRadius = 5;

CTFontRef Font() { return NSSmallSystemFont(); }
CGFloat LineHeight() { return std::ceil(CTFontGetAscent(Font()) + CTFontGetDescent(Font())) + 2; }
CGFloat WidthOf(std::u16string_view text) { return CTLineGetTypographicBounds(CTLineCreate(text, Font()).get()).width; }

/// Kana and ideographs stand without spaces: a line may begin with one, but for the small ones.
bool MayBeginLine(char16_t unit, char16_t before)
{
    constexpr std::u16string_view kSmallKana = u"ぁぃぅぇぉっゃゅょァィゥェォッャュョー";
    return unit >= 0x3041 && unit <= 0x9FFF && kSmallKana.find(unit) == kSmallKana.npos && before != u'「';
}

/// Where the word ends that starts there.
std::size_t EndOfWord(std::u16string_view text, std::size_t start)
{
    std::size_t end = start;
    for (; end < text.size() && text[end] != u' ' && text[end] != u'\n'; ++end)
        if (end > start && MayBeginLine(text[end], text[end - 1])) break;
    return end;
}

/// `value` within `low` and `high`; `low` where they leave no room.
CGFloat Kept(CGFloat value, CGFloat low, CGFloat high) { return std::max(low, std::min(value, high)); }

} // namespace

NS_CLASS_TABLE(NSTextBubble, NSView, "")
NS_CLASS_TABLE_END

bool NSTextBubble::initWithText(const NSString* text, NSRect anchor, NSRect room)
{
    mText = text;
    breakLines(std::min(kMostWidth, room.size.width - 2 * (kMargin + kPadding)));
    CGFloat width = 0;
    for (const auto& line : mLines) width = std::max(width, WidthOf(line));
    const CGSize size = {std::ceil(width) + 2 * kPadding,
                         static_cast<CGFloat>(mLines.size()) * LineHeight() + kPadding + kPointer};
    mBelow = CGRectGetMaxY(anchor) + kGap + size.height <= CGRectGetMaxY(room);
    const CGFloat x = Kept(anchor.origin.x, room.origin.x + kMargin, CGRectGetMaxX(room) - kMargin - size.width);
    const CGFloat y =
        mBelow ? CGRectGetMaxY(anchor) + kGap : std::max(room.origin.y, anchor.origin.y - kGap - size.height);
    mPointerX = Kept(anchor.origin.x + 20, x + kRadius + kPointer, x + size.width - kRadius - kPointer) - x;
    return initWithFrame({{std::round(x), std::round(y)}, size});
}

/// Breaks at line ends and where needed between words; a word that is wider than the note is cut with an ellipsis.
void NSTextBubble::breakLines(CGFloat width)
{
    const std::u16string& text = mText->units();
    char16_t before = u'\n'; // what divides a word from the one before; 0 for nothing
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = EndOfWord(text, start);
        const std::u16string word = text.substr(start, end - start);
        const std::u16string joined = (before == u' ' ? u" " : u"") + word;
        if (before == u'\n' || WidthOf(mLines.back() + joined) > width)
            mLines.push_back(word);
        else
            mLines.back() += joined;
        const bool isDivided = end < text.size() && (text[end] == u' ' || text[end] == u'\n');
        before = isDivided ? text[end] : u'\0';
        start = isDivided ? end + 1 : end;
    }
    for (auto& line : mLines) line = CTTruncatedEnd(line, Font(), width);
}

void NSTextBubble::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const CGFloat top = mBelow ? kPointer : 0, height = bounds().size.height - kPointer;
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::bubbleColor));
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, {{0, top}, {bounds().size.width, height}}, kRadius);
    CGContextFillPath(context);

    const CGFloat base = mBelow ? kPointer : height, tip = mBelow ? 0 : height + kPointer;
    CGContextBeginPath(context);
    CGContextMoveToPoint(context, mPointerX - kPointer, base);
    CGContextAddLineToPoint(context, mPointerX, tip);
    CGContextAddLineToPoint(context, mPointerX + kPointer, base);
    CGContextClosePath(context);
    CGContextFillPath(context);

    CGFloat baseline = top + kPadding / 2 + 1 + std::round(CTFontGetAscent(Font()));
    for (const auto& line : mLines) {
        CTLineDraw(CTLineCreate(line, Font()).get(), context, {kPadding, baseline},
                   NSAppearanceColor(NSAppearanceColorName::bubbleTextColor));
        baseline += LineHeight();
    }
}
