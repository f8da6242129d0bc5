#include "AppKit/NSAppearance.h"
#include "AppKit/NSFirstFailure.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSMenu.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

#include <algorithm>
#include <ranges>

NS_CLASS_TABLE(NSView, NSResponder, "")
NS_CLASS_TABLE_END

NSView::NSView() = default;
NSView::~NSView() = default;

bool NSView::initWithFrame(NSRect frame)
{
    mFrame = frame;
    return init();
}

bool NSView::initWithCoder(NSCoder& coder)
{
    mFrame = CGRectMake(coder.decodeDoubleForKey("frame.x", 0), coder.decodeDoubleForKey("frame.y", 0),
                        coder.decodeDoubleForKey("frame.width", 0), coder.decodeDoubleForKey("frame.height", 0));
    mHidden = coder.decodeBoolForKey("hidden", false);
    mToolTip = coder.decodeStringForKey("toolTip");
    return init();
}

void NSView::dealloc()
{
    // A subview that somebody else keeps must not find its way to a dead superview.
    NSFirstFailure failure;
    while (!mSubviews.empty()) failure.attempt([this] { mSubviews.back()->removeFromSuperview(); });
    NSResponder::dealloc();
    failure.rethrow();
}

// --- the tree

void NSView::setFrame(NSRect frame)
{
    if (frame == mFrame) return;
    const NSRect old = mFrame;
    setNeedsDisplay();
    mFrame = frame;
    setNeedsDisplay();
    if (mWindow && mWindow->contentView() == this && !(frame.size == old.size)) mWindow->contentViewResized();
}

void NSView::addSubview(NSView* view)
{
    if (!view || isDescendantOf(view)) return; // a view can't hold what holds it
    const RetainPtr<NSView> keep(view);
    view->removeFromSuperview();
    mSubviews.push_back(keep);
    view->mSuperview = this;
    view->moveToWindow(mWindow);
    view->setNeedsDisplay();
}

void NSView::removeFromSuperview()
{
    if (!mSuperview) return;
    const RetainPtr<NSView> keep(this);
    NSFirstFailure failure;
    if (mWindow) failure.attempt([this] { mWindow->viewGoesAway(*this); });
    if (mSuperview) { // unless a handler has removed it already
        setNeedsDisplay();
        std::erase(std::exchange(mSuperview, nullptr)->mSubviews, keep);
        failure.attempt([this] { moveToWindow(nullptr); });
    }
    failure.rethrow();
}

void NSView::moveToWindow(NSWindow* window)
{
    if (window == mWindow) return;
    const RetainPtr<NSView> keep(this);
    viewWillMoveToWindow(window);
    mWindow = window;
    const auto subviews = mSubviews;
    for (const auto& view : subviews)
        if (view->mSuperview == this) view->moveToWindow(mWindow);
    if (mWindow == window) viewDidMoveToWindow();
}

bool NSView::isDescendantOf(const NSView* view) const
{
    const NSView* ancestor = this;
    while (ancestor && ancestor != view) ancestor = ancestor->mSuperview;
    return ancestor != nullptr;
}

void NSView::setHidden(bool hidden)
{
    if (hidden == mHidden) return;
    const RetainPtr<NSView> keep(this);
    setNeedsDisplay();
    mHidden = hidden;
    setNeedsDisplay();
    if (hidden && mWindow) mWindow->viewGoesAway(*this);
}

bool NSView::isHiddenOrHasHiddenAncestor() const
{
    const NSView* view = this;
    while (view && !view->mHidden) view = view->mSuperview;
    return view != nullptr;
}

NSResponder* NSView::nextResponder() const
{
    if (mSuperview) return mSuperview;
    return mWindow;
}

bool NSView::performKeyEquivalent(NSEvent& event)
{
    const std::vector<RetainPtr<NSView>> inside = mSubviews; // a key may change them
    return std::any_of(inside.begin(), inside.end(), [&event](const RetainPtr<NSView>& view) {
        return !view->isHidden() && view->performKeyEquivalent(event);
    });
}

bool NSView::canBecomeKeyView() const { return mWindow && acceptsFirstResponder() && !isHiddenOrHasHiddenAncestor(); }

// --- coordinates

NSPoint NSView::convertPointToWindow(NSPoint point) const
{
    for (const NSView* view = this; view; view = view->mSuperview)
        point = {point.x + view->mFrame.origin.x, point.y + view->mFrame.origin.y};
    return point;
}

NSPoint NSView::convertPointFromWindow(NSPoint point) const
{
    const NSPoint origin = convertPointToWindow({});
    return {point.x - origin.x, point.y - origin.y};
}

NSRect NSView::convertRectToWindow(NSRect rect) const { return {convertPointToWindow(rect.origin), rect.size}; }

NSView* NSView::hitTest(NSPoint point)
{
    if (mHidden || !CGRectContainsPoint(bounds(), point)) return nullptr;
    for (const RetainPtr<NSView>& view : std::views::reverse(mSubviews)) {
        const NSPoint origin = view->mFrame.origin;
        NSView* const hit = view->hitTest({point.x - origin.x, point.y - origin.y});
        if (hit) return hit;
    }
    return this;
}

// --- drawing

void NSView::setNeedsDisplay() { setNeedsDisplayInRect(bounds()); }

void NSView::setNeedsDisplayInRect(NSRect rect)
{
    if (!mWindow || isHiddenOrHasHiddenAncestor()) return;
    rect = CGRectIntersection(rect, bounds());
    if (!CGRectIsEmpty(rect)) mWindow->setNeedsDisplayInRect(convertRectToWindow(rect));
}

void NSView::drawRect(NSRect) {}

void NSView::drawFocusRing()
{
    const CGFloat width = NSMetrics::focusRingWidth;
    const CGContextRef context = NSGraphicsContext::currentContext();
    CGContextSetStrokeColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::focusRingColor));
    CGContextSetLineWidth(context, width);
    CGContextBeginPath(context);
    CGContextAddRoundedRect(context, CGRectInset(focusRingBounds(), -width / 2, -width / 2),
                            focusRingRadius() + width / 2);
    CGContextStrokePath(context);
}

// --- events

NSMenu* NSView::menu() const { return static_cast<NSMenu*>(mMenu.get()); }
void NSView::setMenu(NSMenu* menu) { mMenu = menu; }
NSMenu* NSView::menuForEvent(NSEvent&) { return menu(); }

void NSView::rightMouseDown(NSEvent& event)
{
    const RetainPtr<NSView> keep(this);
    if (!NSMenu::popUpContextMenu(event, this)) NSResponder::rightMouseDown(event);
}

void NSView::trackingDidEnd(bool) {}
