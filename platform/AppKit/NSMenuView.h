#pragma once

/// The rows of an open menu: what its window shows and hears. For sources of this folder.
///
/// The window sends everything here, presses outside included. When it is over, `finish` is called with the chosen item
/// or null; nothing happens afterwards.

#include "AppKit/NSMenu.h"
#include "CoreFoundation/CFRunLoop.h"

class NSMenuView final : public NSView {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    using Items = std::vector<RetainPtr<NSMenuItem>>;
    using Finish = std::function<void(NSMenuItem* chosen)>;

    ~NSMenuView() override;

    /// Takes the size that all rows need.
    bool initWithItems(const Items& items, CGFloat minimumWidth);
    CGFloat topOfItem(const NSMenuItem* item) const; ///< in a view that isn't scrolled; 0 for an item that isn't there
    void highlightItem(const NSMenuItem* item);
    /// The menu opened by a press at `spot`; its release counts once the pointer has moved on, and not on `anchor`.
    void setOpening(NSPoint spot, NSRect anchor);
    void setFinish(Finish finish) { mFinish = std::move(finish); }

    NSView* hitTest(NSPoint) override { return this; }
    bool acceptsFirstResponder() const override { return true; }
    void setFrame(NSRect frame) override;
    void drawRect(NSRect dirty) override;

    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void mouseMoved(NSEvent& event) override;
    void rightMouseDown(NSEvent& event) override { mouseDown(event); }
    void rightMouseDragged(NSEvent& event) override { mouseDragged(event); }
    void rightMouseUp(NSEvent& event) override { mouseUp(event); }
    void scrollWheel(NSEvent& event) override;
    void keyDown(NSEvent& event) override;

private:
    struct Row {
        RetainPtr<NSMenuItem> item;
        CGFloat top = 0, height = 0; // unscrolled
    };
    static constexpr int kNone = -1;

    int rowCount() const { return static_cast<int>(mRows.size()); }
    const Row& row(int index) const { return mRows[static_cast<std::size_t>(index)]; }
    bool canChoose(int index) const { return index != kNone && row(index).item->isEnabled(); }
    int rowAt(NSPoint point) const; ///< a row that can be chosen, or none
    int nextRow(int from, int step, bool wraps) const;
    void highlight(int index);
    void finish(int index);

    CGFloat maximumScroll() const;
    bool canScroll(int direction) const;
    NSRect arrowRect(int direction) const; ///< -1 the upper, 1 the lower; empty where there is nothing to scroll to
    void scrollBy(CGFloat points);
    void scrollToRow(int index);
    void pointerAt(NSPoint point);
    void setAutoscroll(int direction);

    void moveHighlightBy(int step);
    void moveHighlightByPage(int direction);
    void typeAhead(const NSEvent& event);
    void drawRow(CGContextRef context, int index) const;
    void drawArrow(CGContextRef context, int direction) const;

    std::vector<Row> mRows;
    CGFloat mContentHeight = 0, mTitleInset = 0;
    CGFloat mScroll = 0;
    int mHighlighted = kNone;
    Finish mFinish;

    NSPoint mOpeningSpot;
    NSRect mAnchor;
    bool mAwaitsOpeningRelease = false;
    bool mPointerMovedOn = false;

    std::u16string mTyped;
    double mLastTyped = 0;
    int mAutoscroll = 0;
    RetainPtr<CFRunLoopTimer> mAutoscrollTimer;
};
