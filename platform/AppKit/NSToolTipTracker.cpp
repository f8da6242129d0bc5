#include "AppKit/NSToolTipTracker.h"
#include "AppKit/NSTextBubble.h"
#include "AppKit/NSWindow.h"

namespace {

/// The nearest view at or above the one under the pointer that has a tool tip; null for none.
NSView* ViewWithToolTip(const NSWindow& window, NSPoint pointer)
{
    NSView* view = window.contentView() ? window.contentView()->hitTest(pointer) : nullptr;
    for (; view; view = view->superview())
        if (const auto toolTip = view->toolTip(); toolTip && toolTip->length() > 0) break;
    return view;
}

} // namespace

NSToolTipTracker::~NSToolTipTracker() { hide(); }

void NSToolTipTracker::eventArrives(const NSEvent& event)
{
    hide();
    if (event.type() != NSMouseMoved) return;
    mPointer = event.locationInWindow();
    if (!ViewWithToolTip(mWindow, mPointer)) return;
    mTimer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kRest, 0, [this] { show(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer, kCFRunLoopCommonModes);
}

void NSToolTipTracker::hide()
{
    if (mTimer) CFRunLoopTimerInvalidate(mTimer);
    mTimer.reset();
    if (mBubble) mWindow.removeOverlay(mBubble);
    mBubble.reset();
}

void NSToolTipTracker::show()
{
    const NSView* const view = ViewWithToolTip(mWindow, mPointer);
    if (!view || !mWindow.isVisible()) return;
    constexpr CGFloat kPointerHeight = 16;
    const RetainPtr<const NSString> toolTip = view->toolTip();
    mBubble = make<NSTextBubble>(&NSTextBubble::initWithText, toolTip.get(), NSRect{mPointer, {0, kPointerHeight}},
                                 NSRect{{0, 0}, mWindow.contentSize()});
    mWindow.addOverlay(mBubble);
}
