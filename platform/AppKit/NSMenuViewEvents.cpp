// What a person does to an open menu.

#include "AppKit/NSMenuView.h"

#include <cmath>

namespace {

constexpr CGFloat kMovedOn = 6;         ///< points from the spot of the press that opened the menu
constexpr double kTypeAheadSeconds = 1; ///< after which typing starts a new beginning
constexpr CGFloat kWheelNotch = 48;     ///< points

/// Small letters of the Latin, Greek and Cyrillic capitals; other characters as they are.
char16_t Lowered(char16_t c)
{
    const bool offset32 = (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7) ||
                          (c >= 0x391 && c <= 0x3A9) || (c >= 0x410 && c <= 0x42F);
    return offset32 ? static_cast<char16_t>(c + 0x20) : c;
}

bool BeginsWith(const NSString* title, std::u16string_view lowered)
{
    if (!title || title->length() < lowered.size()) return false;
    for (std::size_t i = 0; i < lowered.size(); ++i)
        if (Lowered(title->characterAtIndex(i)) != lowered[i]) return false;
    return true;
}

} // namespace

void NSMenuView::setOpening(NSPoint spot, NSRect anchor)
{
    mOpeningSpot = spot;
    mAnchor = anchor;
    mAwaitsOpeningRelease = true;
}

void NSMenuView::finish(int index)
{
    const RetainPtr<NSMenuView> self = this;
    setAutoscroll(0);
    const Finish over = std::exchange(mFinish, nullptr);
    if (over) over(index == kNone ? nullptr : row(index).item.get());
}

void NSMenuView::highlight(int index)
{
    if (index == mHighlighted) return;
    mHighlighted = index;
    setNeedsDisplay();
}

// --- mouse

int NSMenuView::rowAt(NSPoint point) const
{
    if (!CGRectContainsPoint(bounds(), point)) return kNone;
    if (CGRectContainsPoint(arrowRect(-1), point) || CGRectContainsPoint(arrowRect(1), point)) return kNone;
    const CGFloat y = point.y + mScroll;
    for (int i = 0; i < rowCount(); ++i)
        if (y >= row(i).top && y < row(i).top + row(i).height) return canChoose(i) ? i : kNone;
    return kNone;
}

void NSMenuView::pointerAt(NSPoint point)
{
    if (std::hypot(point.x - mOpeningSpot.x, point.y - mOpeningSpot.y) > kMovedOn) mPointerMovedOn = true;
    highlight(rowAt(point));
    setAutoscroll(CGRectContainsPoint(arrowRect(-1), point) ? -1 : CGRectContainsPoint(arrowRect(1), point) ? 1 : 0);
}

void NSMenuView::mouseMoved(NSEvent& event) { pointerAt(event.locationInWindow()); }
void NSMenuView::mouseDragged(NSEvent& event) { pointerAt(event.locationInWindow()); }

void NSMenuView::mouseDown(NSEvent& event)
{
    mAwaitsOpeningRelease = false;
    if (!CGRectContainsPoint(bounds(), event.locationInWindow())) return finish(kNone);
    pointerAt(event.locationInWindow());
}

void NSMenuView::mouseUp(NSEvent& event)
{
    const NSPoint point = event.locationInWindow();
    pointerAt(point);
    // a click opens the menu and leaves it open; a press that is drawn into it chooses at its release
    if (std::exchange(mAwaitsOpeningRelease, false) && (!mPointerMovedOn || CGRectContainsPoint(mAnchor, point)))
        return;
    if (CGRectContainsPoint(bounds(), point) && mHighlighted == kNone) return;
    finish(mHighlighted);
}

void NSMenuView::scrollWheel(NSEvent& event)
{
    scrollBy(-event.scrollingDeltaY() * kWheelNotch);
    pointerAt(event.locationInWindow());
}

// --- keyboard

/// The next row that can be chosen; `from` itself where there is no other.
int NSMenuView::nextRow(int from, int step, bool wraps) const
{
    const int count = rowCount();
    int index = from == kNone && step < 0 ? count : from;
    for (int tried = 0; tried < count; ++tried) {
        index += step;
        if (index < 0 || index >= count) {
            if (!wraps) return from;
            index = step > 0 ? 0 : count - 1;
        }
        if (canChoose(index)) return index;
    }
    return from;
}

void NSMenuView::moveHighlightBy(int step)
{
    highlight(nextRow(mHighlighted, step, true));
    if (mHighlighted != kNone) scrollToRow(mHighlighted);
}

void NSMenuView::moveHighlightByPage(int direction)
{
    const CGFloat start = mHighlighted == kNone ? mScroll : row(mHighlighted).top;
    int index = nextRow(mHighlighted, direction, false);
    while (index != kNone && std::abs(row(index).top - start) < bounds().size.height / 2) {
        const int next = nextRow(index, direction, false);
        if (next == index) break;
        index = next;
    }
    highlight(index);
    if (index != kNone) scrollToRow(index);
}

void NSMenuView::typeAhead(const NSEvent& event)
{
    const NSString* typed = event.characters();
    if (!typed || typed->length() == 0 || typed->characterAtIndex(0) < u' ' || typed->characterAtIndex(0) >= 0xF700)
        return;
    if (event.timestamp() - mLastTyped > kTypeAheadSeconds) mTyped.clear();
    mLastTyped = event.timestamp();
    for (const char16_t c : typed->units()) mTyped.push_back(Lowered(c));
    // a first letter goes on to the next title with it, more letters may stay on this one
    int index = mTyped.size() > 1 && mHighlighted != kNone ? mHighlighted - 1 : mHighlighted;
    for (int tried = 0; tried < rowCount(); ++tried) {
        index = (index + 1) % rowCount();
        if (!canChoose(index) || !BeginsWith(row(index).item->title(), mTyped)) continue;
        highlight(index);
        return scrollToRow(index);
    }
}

void NSMenuView::keyDown(NSEvent& event)
{
    switch (event.keyCharacter()) {
    case NSUpArrowFunctionKey:
        return moveHighlightBy(-1);
    case NSDownArrowFunctionKey:
        return moveHighlightBy(1);
    case NSHomeFunctionKey:
        highlight(kNone);
        return moveHighlightBy(1);
    case NSEndFunctionKey:
        highlight(kNone);
        return moveHighlightBy(-1);
    case NSPageUpFunctionKey:
        return moveHighlightByPage(-1);
    case NSPageDownFunctionKey:
        return moveHighlightByPage(1);
    case NSCarriageReturnCharacter:
    case NSEnterCharacter:
    case u' ':
        return finish(canChoose(mHighlighted) ? mHighlighted : kNone);
    case NSEscapeCharacter:
    case NSTabCharacter:
    case NSBackTabCharacter:
        return finish(kNone);
    default:
        return typeAhead(event);
    }
}
