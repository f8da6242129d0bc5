#include "AppKit/NSMenu.h"

#include "AppKit/NSMenuSession.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSArray.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

NS_CLASS_TABLE(NSMenu, NSObject, "")
NS_CLASS_TABLE_END

bool NSMenu::initWithCoder(NSCoder& coder)
{
    const RetainPtr<NSObject> items = coder.decodeObjectForKey("items");
    const auto* list = asKind<NSArray>(items.get());
    for (std::size_t i = 0; list && i < list->count(); ++i)
        if (auto* item = asKind<NSMenuItem>(list->objectAtIndex(i))) addItem(item);
    return true;
}

NSMenuItem* NSMenu::addItemWithTitle(const NSString* title, SEL action, const NSString* keyEquivalent)
{
    addItem(make<NSMenuItem>(&NSMenuItem::initWithTitle, title, action, keyEquivalent).get());
    return mItems.back();
}

void NSMenu::addItem(NSMenuItem* item)
{
    if (item) mItems.emplace_back(item);
}

void NSMenu::removeAllItems()
{
    cancelTracking();
    mItems.clear();
}

bool NSMenu::popUp(const NSMenuPlacement& placement, NSView* view, Completion completion)
{
    if (!view) return false;
    const RetainPtr<NSMenu> self = this;
    const RetainPtr<NSView> keep = view;
    const auto items = mItems; // an answer may change the menu
    for (const auto& item : items)
        if (auto* target = asKind<NSView>(item->target())) item->setEnabled(target->validateUserInterfaceItem(*item));
    return !mItems.empty() && NSMenuSession::begin(*this, placement, *view, std::move(completion));
}

bool NSMenu::popUpMenuPositioningItem(const NSMenuItem* item, NSPoint location, NSView* view)
{
    NSMenuPlacement placement;
    placement.anchor = {location, {}};
    placement.overAnchor = placement.highlighted = item;
    return popUp(placement, view);
}

bool NSMenu::popUpContextMenu(NSEvent& event, NSView* view)
{
    const RetainPtr<NSView> keep = view;
    const RetainPtr<NSMenu> menu = view ? view->menuForEvent(event) : nullptr;
    if (!menu) return false;
    NSMenuPlacement placement;
    placement.anchor = {view->convertPointFromWindow(event.locationInWindow()), {}};
    placement.opener = &event;
    return menu->popUp(placement, view);
}

bool NSMenu::isOpen() const { return popUpWindow() != nullptr; }

NSWindow* NSMenu::popUpWindow() const
{
    const NSMenuSession* session = NSMenuSession::current();
    return session && session->menu() == this ? session->window() : nullptr;
}

void NSMenu::cancelTracking()
{
    if (isOpen()) NSMenuSession::current()->end(nullptr);
}

void NSMenu::cancelTrackingInside(const NSView* view)
{
    NSMenuSession* const session = NSMenuSession::current();
    if (session && session->owner()->isDescendantOf(view)) session->end(nullptr);
}
