// The first responder, and the walk of the Tab key.

#include "AppKit/NSTemporarily.h"
#include "AppKit/NSWindow.h"

NSResponder* NSWindow::firstResponder() const
{
    // the window is what remains; it doesn't own itself
    return mFirstResponder ? mFirstResponder.get() : const_cast<NSWindow*>(this);
}

bool NSWindow::makeFirstResponder(NSResponder* responder)
{
    const RetainPtr<NSWindow> keep(this);
    const RetainPtr<NSResponder> next(responder == this ? nullptr : responder), old = mFirstResponder;
    if (next == old) return true;
    auto* const nextView = asKind<NSView>(next.get());
    const auto isFit = [&] {
        return !next || (!mClosed && next->acceptsFirstResponder() &&
                         (!nextView || (nextView->window() == this && !nextView->isHiddenOrHasHiddenAncestor())));
    };
    if (!isFit()) return false;

    const unsigned change = ++mFocusChanges;
    if (old && old != mResigning) { // a handler of its end may choose another
        const NSTemporarily<NSResponder*> resigning(mResigning, old);
        if (!old->resignFirstResponder()) return false;
    }
    if (change != mFocusChanges) return mFirstResponder == next;
    mFirstResponder = nullptr;
    updateRing();
    if (!next) return true;
    if (!isFit() || !next->becomeFirstResponder()) return false;
    if (change != mFocusChanges) { // it has handed the focus on, as a field does to its editor
        const auto* const view = asKind<NSView>(mFirstResponder.get());
        return mFirstResponder == next || (view && nextView && view->isDescendantOf(nextView));
    }
    if (!isFit()) return false;
    mFirstResponder = next;
    updateRing();
    return true;
}

void NSWindow::resignFocusInside(const NSView* view)
{
    const RetainPtr<NSResponder> old = mFirstResponder;
    const auto* const focused = asKind<NSView>(old.get());
    if (!focused || !focused->isDescendantOf(view)) return;
    const RetainPtr<NSWindow> keep(this);
    ++mFocusChanges;
    mFirstResponder = nullptr;
    updateRing();
    old->abortEditing();
    old->resignFirstResponder();
}

std::vector<NSView*> NSWindow::keyViews() const
{
    std::vector<NSView*> views;
    const auto walk = [&views](const auto& self, NSView& view) -> void {
        if (view.isHidden()) return;
        if (view.canBecomeKeyView()) return views.push_back(&view);
        for (const auto& subview : view.subviews()) self(self, *subview);
    };
    if (mContentView) walk(walk, *mContentView);
    return views;
}

void NSWindow::selectNextKeyView() { selectKeyView(1); }
void NSWindow::selectPreviousKeyView() { selectKeyView(-1); }

/// Goes on from the view that has the focus, or holds what has it, to the first that takes it.
void NSWindow::selectKeyView(int step)
{
    const RetainPtr<NSWindow> keep(this);
    const auto plain = keyViews();
    const std::vector<RetainPtr<NSView>> views(plain.begin(), plain.end());
    const auto count = static_cast<std::ptrdiff_t>(views.size());
    const auto* const focused = asKind<NSView>(mFirstResponder.get());
    const auto current = std::find_if(views.begin(), views.end(),
                                      [&](const auto& view) { return focused && focused->isDescendantOf(view); });
    std::ptrdiff_t index = current != views.end() ? current - views.begin() : step > 0 ? -1 : count;
    const RetainPtr<NSResponder> before = mFirstResponder;
    for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
        index = (index + step + count) % count;
        if (makeFirstResponder(views[static_cast<std::size_t>(index)])) return;
        if (before && mFirstResponder == before) return; // it doesn't want to go
    }
}
