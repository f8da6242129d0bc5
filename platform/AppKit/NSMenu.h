#pragma once

/// A list of items that opens in a window of its own over a view.
///
/// An open menu is driven by events, never by a loop of its own: the calls that open one return at once. One menu is
/// open at a time; opening another closes it. It closes when an item is chosen, on Escape, Tab or a press outside, when
/// it loses the pointer, and when its view is hidden, leaves its window, or that window closes. Then its completion is
/// called once, with the chosen item or null, and after it the chosen item's action is sent to the item's target, with
/// the item as sender.

#include "AppKit/NSMenuItem.h"
#include "AppKit/NSView.h"

#include <functional>
#include <vector>

class NSWindow;

/// Where a menu opens, in the view's coordinates.
struct NSMenuPlacement {
    NSRect anchor;                          ///< the menu goes below it, above where there is no room below
    const NSMenuItem* overAnchor = nullptr; ///< this item's row lies on the anchor instead
    const NSMenuItem* highlighted = nullptr;
    CGFloat minimumWidth = 0;
    const NSEvent* opener = nullptr; ///< the press that opens the menu: its release may choose if the pointer moved on
};

class NSMenu : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    using Completion = std::function<void(NSMenuItem* chosen)>;

    /// Reads items.
    bool initWithCoder(NSCoder& coder) override;

    NSMenuItem* addItemWithTitle(const NSString* title, SEL action, const NSString* keyEquivalent);
    void addItem(NSMenuItem* item);
    const std::vector<RetainPtr<NSMenuItem>>& itemArray() const { return mItems; }
    void removeAllItems(); ///< an open menu closes

    /// Items whose target is a view are enabled as the view's `validateUserInterfaceItem` says, then the menu opens.
    /// @return false without items, or where the view is in no visible window; the completion is then never called
    bool popUp(const NSMenuPlacement& placement, NSView* view, Completion completion = {});
    /// Opens with the item's row, or without an item with the menu's corner, at `location` of the view.
    bool popUpMenuPositioningItem(const NSMenuItem* item, NSPoint location, NSView* view);
    /// Opens what the view's `menuForEvent` answers, at the event. @return false where there is no menu
    static bool popUpContextMenu(NSEvent& event, NSView* view);

    bool isOpen() const;
    /// The window of the open menu; null while it is closed.
    NSWindow* popUpWindow() const;
    void cancelTracking(); ///< closes without a choice
    /// Closes the open menu if its view is `view` or lies inside it.
    static void cancelTrackingInside(const NSView* view);

private:
    std::vector<RetainPtr<NSMenuItem>> mItems;
};
