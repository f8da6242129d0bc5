#include "AppKit/NSPopUpButton.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSClass.h"
#include "Foundation/WeakPtr.h"

#include <algorithm>

NS_CLASS_TABLE(NSPopUpButton, NSActionControl, "")
NS_CLASS_TABLE_END

RetainPtr<NSCell> NSPopUpButton::makeCell() const { return make<NSPopUpButtonCell>(); }
NSPopUpButtonCell* NSPopUpButton::popUpCell() const { return asKind<NSPopUpButtonCell>(cell()); }
NSMenu* NSPopUpButton::menuOfItems() const { return popUpCell() ? popUpCell()->menu() : nullptr; }

// --- items

void NSPopUpButton::removeAllItems()
{
    if (popUpCell()) popUpCell()->removeAllItems();
    setNeedsDisplay();
}

void NSPopUpButton::addItemWithTitle(const NSString* title)
{
    if (popUpCell()) popUpCell()->addItemWithTitle(title);
    setNeedsDisplay();
}

int NSPopUpButton::numberOfItems() const { return popUpCell() ? popUpCell()->numberOfItems() : 0; }

const NSString* NSPopUpButton::itemTitleAtIndex(int index) const
{
    return popUpCell() ? popUpCell()->itemTitleAtIndex(index) : nullptr;
}

int NSPopUpButton::indexOfSelectedItem() const { return popUpCell() ? popUpCell()->indexOfSelectedItem() : -1; }

void NSPopUpButton::selectItemAtIndex(int index)
{
    if (popUpCell()) popUpCell()->selectItemAtIndex(index);
    setNeedsDisplay();
}

const NSString* NSPopUpButton::titleOfSelectedItem() const { return itemTitleAtIndex(indexOfSelectedItem()); }

void NSPopUpButton::setTitle(const NSString* title)
{
    if (popUpCell()) popUpCell()->selectItemWithTitle(title);
    setNeedsDisplay();
}

// --- menu

void NSPopUpButton::setEnabled(bool enabled)
{
    if (!enabled && menuOfItems()) menuOfItems()->cancelTracking();
    NSActionControl::setEnabled(enabled);
}

void NSPopUpButton::mouseDown(NSEvent& event)
{
    const RetainPtr<NSPopUpButton> self = this;
    const RetainPtr<NSWindow> in = window();
    if (!isEnabled() || !in || !in->makeFirstResponder(this)) return;
    openMenu(&event);
}

void NSPopUpButton::keyDown(NSEvent& event)
{
    static constexpr unichar kOpeners[] = {u' ', NSCarriageReturnCharacter, NSEnterCharacter, NSUpArrowFunctionKey,
                                           NSDownArrowFunctionKey};
    if (std::find(std::begin(kOpeners), std::end(kOpeners), event.keyCharacter()) == std::end(kOpeners))
        return NSActionControl::keyDown(event);
    if (isEnabled()) openMenu(nullptr);
}

void NSPopUpButton::openMenu(const NSEvent* press)
{
    const RetainPtr<NSMenu> menu = menuOfItems();
    if (!menu || !window()) return;
    const int selected = indexOfSelectedItem();
    NSMenuPlacement placement;
    placement.anchor = bounds();
    placement.minimumWidth = bounds().size.width;
    placement.opener = press;
    if (selected >= 0) placement.highlighted = menu->itemArray()[static_cast<std::size_t>(selected)];
    const WeakPtr<NSPopUpButton> self = this;
    menu->popUp(placement, this, [self](NSMenuItem* chosen) {
        if (self) self->menuDidClose(chosen);
    });
    setHighlighted(menu->isOpen());
}

void NSPopUpButton::menuDidClose(NSMenuItem* chosen)
{
    setHighlighted(false);
    if (!chosen || !isEnabled()) return;
    const auto& items = menuOfItems()->itemArray();
    const auto found = std::find_if(items.begin(), items.end(), [chosen](const auto& item) { return item == chosen; });
    if (found == items.end()) return;
    selectItemAtIndex(static_cast<int>(found - items.begin()));
    sendAction(action(), target());
}

NSRect NSPopUpButton::focusRingBounds() const { return bounds(); }
CGFloat NSPopUpButton::focusRingRadius() const { return NSMetrics::controlCornerRadius; }
