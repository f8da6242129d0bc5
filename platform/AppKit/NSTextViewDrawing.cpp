// Where a field editor's text stands, and how it is drawn.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSTextView.h"
#include "AppKit/NSWindow.h"

#include <cmath>

namespace {

constexpr CGFloat kCaretWidth = 1.5;
/// How far a caret, or a letter that leans out, may reach over the ends of the text area.
constexpr CGFloat kOverhang = 2;

} // namespace

CGPoint NSTextOrigin(NSRect area, CTLineRef line, CTFontRef font, NSTextAlignment alignment)
{
    const CGFloat slack = area.size.width - CTLineGetTypographicBounds(line).width;
    const CGFloat x = alignment == NSRightTextAlignment ? slack : alignment == NSCenterTextAlignment ? slack / 2 : 0;
    const CGFloat ascent = CTFontGetAscent(font), height = ascent + CTFontGetDescent(font);
    return {area.origin.x + x, std::round(CGRectGetMidY(area) - height / 2 + ascent)};
}

NSRect NSTextView::textArea() const { return CGRectInset(bounds(), mStyle.inset, 0); }

CTLineRef NSTextView::line() const
{
    if (!mLine) mLine = CTLineCreate(mEditing.text(), mStyle.font.get());
    return mLine.get();
}

CGPoint NSTextView::lineOrigin() const
{
    const NSRect area = textArea();
    CGPoint origin = NSTextOrigin(area, line(), mStyle.font.get(), mStyle.alignment);
    if (CTLineGetTypographicBounds(line()).width > area.size.width) origin.x = area.origin.x - mScrolled;
    return origin;
}

CGFloat NSTextView::caretOffset() const { return CTLineGetOffsetForStringIndex(line(), mEditing.caret()); }

NSRect NSTextView::caretRect() const
{
    if (!mClient) return {};
    const CGPoint origin = lineOrigin();
    const CGFloat ascent = CTFontGetAscent(mStyle.font.get()), descent = CTFontGetDescent(mStyle.font.get());
    return CGRectMake(std::round(origin.x + caretOffset() - 0.25), origin.y - std::ceil(ascent), kCaretWidth,
                      std::ceil(ascent) + std::ceil(descent));
}

void NSTextView::scrollToCaret()
{
    const CGFloat room = textArea().size.width;
    const CGFloat most = std::max(0.0, CTLineGetTypographicBounds(line()).width - room);
    const CGFloat caret = caretOffset();
    mScrolled = std::min(mScrolled, caret);
    mScrolled = std::max(mScrolled, caret - room);
    mScrolled = std::clamp(mScrolled, 0.0, most);
}

void NSTextView::drawRect(NSRect)
{
    if (!mClient) return;
    const CGContextRef context = NSGraphicsContext::currentContext();
    const ScopedGState state(context);
    CGContextClipToRect(context, CGRectInset(textArea(), -kOverhang, 0));
    drawSelection(context);
    CTLineDraw(line(), context, lineOrigin(), mStyle.color->CGColorForScale(1).get());
    const bool caretStands = mFocused && mEditable && window() && window()->isKeyWindow();
    if (!caretStands || !mBlink.isShown() || !mEditing.selection().empty()) return;
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::controlAccentColor));
    CGContextFillRect(context, caretRect());
}

void NSTextView::drawSelection(CGContextRef context) const
{
    using enum NSAppearanceColorName;
    const bool active = mFocused && window() && window()->isKeyWindow();
    const NSTextEditing::Span range = mEditing.selection();
    const NSRect caret = caretRect();
    const CGFloat start = lineOrigin().x;
    CGContextSetFillColorWithColor(context, NSAppearanceColor(active ? selectionColor : inactiveSelectionColor));
    for (const CTLineSpan& span : CTLineGetSelectionSpans(line(), range.start, range.end))
        CGContextFillRect(context, {{start + span.x, caret.origin.y}, {span.width, caret.size.height}});
}

CGFloat NSTextView::focusRingRadius() const { return NSMetrics::controlCornerRadius; }

void NSTextView::drawFocusRing()
{
    if (!mClient || !mClient->textIsRefused()) return NSView::drawFocusRing();
    const auto [red, green, blue, ignored] = CGColorGetComponents(NSAppearanceColor(NSAppearanceColorName::errorColor));
    // as the ring of a field that isn't refused
    const CGFloat alpha = CGColorGetComponents(NSAppearanceColor(NSAppearanceColorName::focusRingColor))[3];
    const CGContextRef context = NSGraphicsContext::currentContext();
    const CGFloat width = NSMetrics::focusRingWidth;
    const auto color = CGColorCreateRGBA(red, green, blue, alpha);
    CGContextSetStrokeColorWithColor(context, color.get());
    CGContextSetLineWidth(context, width);
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, CGRectInset(focusRingBounds(), -width / 2, -width / 2),
                            focusRingRadius() + width / 2);
    CGContextStrokePath(context);
}
