#include "AppKit/NSBubble.h"
#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"

#include <cmath>

NS_CLASS_TABLE(NSBubble, NSView, "")
NS_CLASS_TABLE_END

namespace {

constexpr CGFloat kInsetX = 8, kInsetY = 5, kGap = 6, kRadius = 5;

CGFloat LineHeight() { return std::ceil(CTFontGetAscent(NSSmallSystemFont()) + CTFontGetDescent(NSSmallSystemFont())); }

/// The end of the first line of `text`: after the last word that fits, or after the first where none does.
std::size_t EndOfLine(std::u16string_view text, CGFloat width)
{
    const std::size_t newline = std::min(text.find(u'\n'), text.size());
    std::size_t end = 0;
    while (end < newline) {
        const std::size_t next = std::min(text.find(u' ', end + 1), newline);
        const auto line = CTLineCreate(text.substr(0, next), NSSmallSystemFont());
        if (end > 0 && CTLineGetTypographicBounds(line.get()).width > width) break;
        end = next;
    }
    return end;
}

} // namespace

bool NSBubble::initWithText(const NSString* text)
{
    std::u16string_view rest = text ? std::u16string_view(text->units()) : std::u16string_view();
    CGFloat widest = 0;
    while (!rest.empty()) {
        const std::size_t end = EndOfLine(rest, kWidest);
        mLines.push_back(CTLineCreate(rest.substr(0, end), NSSmallSystemFont()));
        widest = std::max(widest, CTLineGetTypographicBounds(mLines.back()).width);
        rest.remove_prefix(std::min(end + 1, rest.size())); // with the blank or the line's end
    }
    const auto lines = static_cast<CGFloat>(mLines.size());
    return initWithFrame({{0, 0}, {std::ceil(widest) + 2 * kInsetX, lines * LineHeight() + 2 * kInsetY}});
}

void NSBubble::placeAt(NSRect rect, NSSize window)
{
    const NSSize size = frame().size;
    CGFloat y = CGRectGetMaxY(rect) + kGap;
    if (y + size.height > window.height) y = rect.origin.y - kGap - size.height;
    const auto within = [](CGFloat position, CGFloat length, CGFloat room) {
        return std::max(0.0, std::min(position, room - length));
    };
    setFrame({{within(rect.origin.x, size.width, window.width), within(y, size.height, window.height)}, size});
}

void NSBubble::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::bubbleColor));
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, bounds(), kRadius);
    CGContextFillPath(context);
    CGFloat baseline = kInsetY + CTFontGetAscent(NSSmallSystemFont());
    for (const auto& line : mLines) {
        CTLineDraw(line, context, {kInsetX, baseline}, NSAppearanceColor(NSAppearanceColorName::bubbleTextColor));
        baseline += LineHeight();
    }
}
