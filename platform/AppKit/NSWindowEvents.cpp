// Where events go: the mouse to views, keys to the first responder.

#include "AppKit/NSApplication.h"
#include "AppKit/NSMenu.h"
#include "AppKit/NSTemporarily.h"
#include "AppKit/NSToolTipTracker.h"
#include "AppKit/NSWindow.h"

bool NSWindow::sendEvent(NSEvent& event)
{
    if (mClosed) return false;
    const RetainPtr<NSWindow> keep(this);
    const RetainPtr<NSEvent> keepEvent(&event);
    const NSTemporarily<NSEvent*> delivered(mEvent, &event);
    const NSTemporarily<bool> unwanted(mEventUnwanted, false);
    const NSTemporarily<RetainPtr<NSEvent>> current(NSApplication::sharedApplication()->mCurrentEvent, keepEvent);
    event.mWindow = this;
    if (mToolTips) mToolTips->eventArrives(event);
    dispatch(event);
    return !mEventUnwanted;
}

void NSWindow::noResponderFor(NSEvent& event)
{
    if (&event == mEvent) mEventUnwanted = true;
}

void NSWindow::dispatch(NSEvent& event)
{
    switch (event.type()) {
    case NSLeftMouseDown:
    case NSRightMouseDown:
        return sendPress(event);
    case NSLeftMouseDragged:
    case NSRightMouseDragged:
        return sendDrag(event);
    case NSLeftMouseUp:
    case NSRightMouseUp:
        return sendRelease(event);
    case NSMouseMoved:
    case NSMouseEntered:
        updateHover(event);
        return sendToViewUnderPointer(event, &NSResponder::mouseMoved);
    case NSMouseExited:
        return setHovered(nullptr, event);
    case NSScrollWheel:
        return sendToViewUnderPointer(event, &NSResponder::scrollWheel);
    case NSKeyDown:
    case NSKeyUp:
        return sendKey(event);
    }
}

// --- the mouse

RetainPtr<NSView> NSWindow::viewAt(NSPoint point) const
{
    return mContentView ? mContentView->hitTest(point) : nullptr; // its origin is the window's
}

void NSWindow::sendToViewUnderPointer(NSEvent& event, void (NSResponder::*message)(NSEvent&))
{
    const RetainPtr<NSView> view = viewAt(event.locationInWindow());
    NSResponder& receiver = view ? static_cast<NSResponder&>(*view) : *this;
    (receiver.*message)(event);
}

void NSWindow::sendPress(NSEvent& event)
{
    const bool left = event.type() == NSLeftMouseDown;
    if (mTrackingView && left == mTracksRightButton) return; // the other button during a drag
    endTracking();                                           // its release was lost
    if (mClosed) return;
    if (!mKey && mBackend) mBackend->takeFocus();
    const RetainPtr<NSView> view = viewAt(event.locationInWindow());
    mPressedView = view.get();
    if (!view) {
        if (left) return mouseDown(event);
        return rightMouseDown(event);
    }
    if (!left) return view->rightMouseDown(event);
    if ((event.modifierFlags() & NSControlKeyMask) && NSMenu::popUpContextMenu(event, view)) return;
    view->mouseDown(event);
}

void NSWindow::sendDrag(NSEvent& event)
{
    const bool left = event.type() == NSLeftMouseDragged;
    if (mTrackingView && left == mTracksRightButton) return;
    const RetainPtr<NSView> view = mTrackingView ? mTrackingView : RetainPtr<NSView>(mPressedView.get());
    const auto message = left ? &NSResponder::mouseDragged : &NSResponder::rightMouseDragged;
    if (view) return ((*view).*message)(event);
    updateHover(event); // a press elsewhere goes on here, as from a button to its menu
    sendToViewUnderPointer(event, message);
}

void NSWindow::sendRelease(NSEvent& event)
{
    const bool left = event.type() == NSLeftMouseUp;
    if (mTrackingView && left == mTracksRightButton) return;
    const auto message = left ? &NSResponder::mouseUp : &NSResponder::rightMouseUp;
    const RetainPtr<NSView> pressed(mPressedView.get());
    mPressedView = nullptr;
    if (mTrackingView) {
        const RetainPtr<NSView> view = mTrackingView;
        try {
            ((*view).*message)(event);
        } catch (...) {
            if (mTrackingView == view) finishTracking(true);
            throw;
        }
        if (mTrackingView == view) finishTracking(true);
    } else if (pressed) {
        ((*pressed).*message)(event);
    } else {
        sendToViewUnderPointer(event, message);
    }
    if (!mClosed) updateHover(event);
}

/// A press that no view wanted ends what is being typed.
void NSWindow::mouseDown(NSEvent& event)
{
    makeFirstResponder(nullptr);
    noResponderFor(event);
}

// --- tracking

void NSWindow::beginTracking(NSView* view)
{
    const RetainPtr<NSView> keep(view);
    if (view == mTrackingView) return;
    endTracking();
    if (!view || mClosed || view->window() != this) return;
    mTrackingView = view;
    mTracksRightButton = mEvent && mEvent->type() == NSRightMouseDown;
}

void NSWindow::endTracking(const NSView* inside)
{
    if (!mTrackingView || (inside && !mTrackingView->isDescendantOf(inside))) return;
    finishTracking(false);
}

/// The tracking is over before its view hears of it, so that whatever the view does then, it hears of it once.
void NSWindow::finishTracking(bool byRelease)
{
    const RetainPtr<NSWindow> keep(this);
    const RetainPtr<NSView> view = std::exchange(mTrackingView, nullptr);
    if (view) view->trackingDidEnd(byRelease);
}

// --- hover

void NSWindow::updateHover(NSEvent& event)
{
    if (mTrackingView || mClosed) return;
    const RetainPtr<NSView> view = viewAt(event.locationInWindow());
    setHovered(view, event);
    const NSCursorShape shape = view && view->window() == this
                                    ? view->cursorAtPoint(view->convertPointFromWindow(event.locationInWindow()))
                                    : NSCursorShape::arrow;
    if (shape == mCursor || !mBackend) return;
    mCursor = shape;
    mBackend->setCursor(shape);
}

void NSWindow::setHovered(NSView* view, NSEvent& event)
{
    const RetainPtr<NSView> old(mHoveredView.get()), keep(view);
    if (view == old) return;
    mHoveredView = view;
    const auto send = [&](NSEventType type, NSView& receiver, void (NSResponder::*message)(NSEvent&)) {
        const auto crossing =
            NSEvent::mouseEvent(type, event.locationInWindow(), event.modifierFlags(), event.timestamp(), this, 0);
        (receiver.*message)(*crossing);
    };
    if (old) send(NSMouseExited, *old, &NSResponder::mouseExited);
    if (view && mHoveredView == view) send(NSMouseEntered, *view, &NSResponder::mouseEntered);
}

// --- keys

void NSWindow::sendKey(NSEvent& event)
{
    if (event.type() == NSKeyDown && event.keyCharacter() == NSEscapeCharacter && mTrackingView) {
        const RetainPtr<NSView> view = mTrackingView;
        if (view->abandonTracking()) return endTracking(view);
    }
    const RetainPtr<NSResponder> responder(firstResponder());
    if (event.type() == NSKeyDown) return responder->keyDown(event);
    responder->keyUp(event);
}

bool NSWindow::contentTakesKey(NSEvent& event) const
{
    const RetainPtr<NSView> content = mContentView;
    return content && content->performKeyEquivalent(event);
}

void NSWindow::keyDown(NSEvent& event)
{
    const bool backward = event.keyCharacter() == NSBackTabCharacter || (event.modifierFlags() & NSShiftKeyMask);
    if (event.keyCharacter() != NSTabCharacter && event.keyCharacter() != NSBackTabCharacter)
        return contentTakesKey(event) ? void() : noResponderFor(event);
    selectKeyView(backward ? -1 : 1);
}
