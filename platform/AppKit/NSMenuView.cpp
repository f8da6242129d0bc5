// The rows of an open menu: layout, scrolling and drawing.

#include "AppKit/NSMenuView.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"

#include <cmath>

NS_CLASS_TABLE(NSMenuView, NSView, "")
NS_CLASS_TABLE_END

namespace {

using enum NSAppearanceColorName;

constexpr CGFloat kRowHeight = 24;
constexpr CGFloat kSeparatorHeight = 9;
constexpr CGFloat kPadding = 5;     ///< above the first and below the last row
constexpr CGFloat kMarkColumn = 28; ///< left of the titles, where an item has a check mark
constexpr CGFloat kSideInset = 12;
constexpr CGFloat kMinimumWidth = 120;
constexpr CGFloat kArrowHeight = 18;
constexpr CFTimeInterval kAutoscrollInterval = 0.04;
constexpr CGFloat kAutoscrollStep = 8;

} // namespace

NSMenuView::~NSMenuView() { setAutoscroll(0); }

bool NSMenuView::initWithItems(const Items& items, CGFloat minimumWidth)
{
    const auto marked = [](const auto& item) { return item->state() == NSOnState; };
    mTitleInset = std::any_of(items.begin(), items.end(), marked) ? kMarkColumn : kSideInset;
    CGFloat width = std::max(minimumWidth, kMinimumWidth), y = kPadding;
    for (const auto& item : items) {
        const CGFloat height = item->isSeparatorItem() ? kSeparatorHeight : kRowHeight;
        mRows.push_back({item, y, height});
        y += height;
        width = std::max(width, mTitleInset + NSWidthOfLine(item->title(), NSSystemFont()) + kSideInset + 4);
    }
    mContentHeight = y + kPadding;
    return initWithFrame(CGRectMake(0, 0, std::ceil(width), mContentHeight));
}

CGFloat NSMenuView::topOfItem(const NSMenuItem* item) const
{
    for (const Row& each : mRows)
        if (each.item == item) return each.top;
    return 0;
}

void NSMenuView::highlightItem(const NSMenuItem* item)
{
    for (int i = 0; i < rowCount(); ++i)
        if (item && row(i).item == item) mHighlighted = i;
    if (mHighlighted != kNone) scrollToRow(mHighlighted);
}

void NSMenuView::setFrame(NSRect frame)
{
    NSView::setFrame(frame);
    if (mHighlighted != kNone) scrollToRow(mHighlighted);
}

// --- scrolling

CGFloat NSMenuView::maximumScroll() const { return std::max(mContentHeight - bounds().size.height, 0.0); }

bool NSMenuView::canScroll(int direction) const { return direction < 0 ? mScroll > 0 : mScroll < maximumScroll(); }

NSRect NSMenuView::arrowRect(int direction) const
{
    if (!canScroll(direction)) return {};
    const NSRect inside = CGRectInset(bounds(), 1, 1);
    const CGFloat top = direction < 0 ? inside.origin.y : CGRectGetMaxY(inside) - kArrowHeight;
    return CGRectMake(inside.origin.x, top, inside.size.width, kArrowHeight);
}

void NSMenuView::scrollBy(CGFloat points)
{
    mScroll = std::clamp(mScroll + points, 0.0, maximumScroll());
    setNeedsDisplay();
}

void NSMenuView::scrollToRow(int index)
{
    // the first and the last row bring the padding with them, so that their arrow goes away
    const CGFloat top = index == 0 ? 0 : row(index).top - kArrowHeight;
    const CGFloat bottom = index == rowCount() - 1 ? mContentHeight : row(index).top + row(index).height + kArrowHeight;
    if (top < mScroll) scrollBy(top - mScroll);
    if (bottom > mScroll + bounds().size.height) scrollBy(bottom - mScroll - bounds().size.height);
}

void NSMenuView::setAutoscroll(int direction)
{
    if (direction == mAutoscroll) return;
    mAutoscroll = direction;
    CFRunLoopTimerInvalidate(mAutoscrollTimer.get());
    mAutoscrollTimer = nullptr;
    if (direction == 0) return;
    mAutoscrollTimer =
        CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kAutoscrollInterval, kAutoscrollInterval, [this] {
            scrollBy(mAutoscroll * kAutoscrollStep);
            if (!canScroll(mAutoscroll)) setAutoscroll(0);
        });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mAutoscrollTimer.get(), kCFRunLoopCommonModes);
}

// --- drawing

void NSMenuView::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    NSDrawBox(context, bounds(), {menuColor, menuBorderColor, 0});
    {
        const ScopedGState state(context);
        CGContextClipToRect(context, CGRectInset(bounds(), 1, 1));
        for (int i = 0; i < rowCount(); ++i) drawRow(context, i);
    }
    drawArrow(context, -1);
    drawArrow(context, 1);
}

void NSMenuView::drawRow(CGContextRef context, int index) const
{
    const Row& drawn = row(index);
    const NSRect rect = CGRectMake(0, drawn.top - mScroll, bounds().size.width, drawn.height);
    if (CGRectGetMaxY(rect) < 0 || rect.origin.y > bounds().size.height) return;
    const CGFloat middle = CGRectGetMidY(rect);
    if (drawn.item->isSeparatorItem()) {
        CGContextSetFillColorWithColor(context, NSAppearanceColor(menuSeparatorColor));
        return CGContextFillRect(context, CGRectMake(1, std::floor(middle), rect.size.width - 2, 1));
    }
    const bool lit = index == mHighlighted && drawn.item->isEnabled();
    if (lit)
        NSFillRounded(context, CGRectInset(rect, kPadding, 0), NSMetrics::controlCornerRadius - 1, menuHighlightColor);
    const auto color = lit ? menuHighlightTextColor : drawn.item->isEnabled() ? textColor : disabledControlTextColor;
    if (drawn.item->state() == NSOnState) NSDrawCheckMark(context, {kMarkColumn / 2 + 2, middle}, 17, color);
    NSRect text = rect;
    text.origin.x = mTitleInset;
    text.size.width -= mTitleInset + kSideInset;
    NSDrawLine(context, drawn.item->title(), NSSystemFont(), text, NSLeftTextAlignment, color);
}

void NSMenuView::drawArrow(CGContextRef context, int direction) const
{
    const NSRect rect = arrowRect(direction);
    if (CGRectIsEmpty(rect)) return;
    CGContextSetFillColorWithColor(context, NSAppearanceColor(menuColor));
    CGContextFillRect(context, rect);
    NSDrawChevron(context, {CGRectGetMidX(rect), CGRectGetMidY(rect)}, direction < 0 ? NSChevron::up : NSChevron::down,
                  secondaryLabelColor);
}
