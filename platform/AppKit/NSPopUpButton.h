#pragma once

/// A button that shows the selected item of a menu and opens the menu: by a press, Space, Return and the vertical
/// arrows.
///
/// Choosing an item selects it and sends the action, also where it was selected before.

#include "AppKit/NSActionControl.h"
#include "AppKit/NSPopUpButtonCell.h"

class NSPopUpButton : public NSActionControl {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    RetainPtr<NSCell> makeCell() const override;

    // See NSPopUpButtonCell.
    NSMenu* menuOfItems() const;
    void removeAllItems();
    void addItemWithTitle(const NSString* title);
    int numberOfItems() const;
    const NSString* itemTitleAtIndex(int index) const;
    int indexOfSelectedItem() const;
    void selectItemAtIndex(int index);
    const NSString* titleOfSelectedItem() const; ///< null for none
    /// Selects the first item of that title; without one the selection stays.
    void setTitle(const NSString* title);

    void setEnabled(bool enabled) override; ///< closes the menu when disabled
    void mouseDown(NSEvent& event) override;
    void keyDown(NSEvent& event) override;
    NSRect focusRingBounds() const override;
    CGFloat focusRingRadius() const override;

private:
    NSPopUpButtonCell* popUpCell() const;
    void openMenu(const NSEvent* press); ///< null for a key
    void menuDidClose(NSMenuItem* chosen);
};
