#pragma once

/// The items of a pop-up button, which of them is selected, and the looks. Its value is the index of the selected item.

#include "AppKit/NSActionCell.h"
#include "AppKit/NSMenu.h"

class NSPopUpButtonCell : public NSActionCell {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    NSPopUpButtonCell();
    /// Reads the menu with its items besides what every cell reads.
    bool initWithCoder(NSCoder& coder) override;

    NSMenu* menu() const { return mMenu; }
    void removeAllItems();
    void addItemWithTitle(const NSString* title); ///< the first one is selected
    int numberOfItems() const;
    const NSString* itemTitleAtIndex(int index) const;         ///< null outside the list
    int indexOfSelectedItem() const { return mSelectedIndex; } ///< -1 for none
    void selectItemAtIndex(int index);                         ///< -1 for none; others outside the list change nothing
    void selectItemWithTitle(const NSString* title);           ///< the first of that title; without one nothing changes

    void setObjectValue(NSObject* value) override;
    void drawWithFrame(NSRect frame, NSView& view) override;

private:
    RetainPtr<NSMenu> mMenu;
    int mSelectedIndex = -1;
};
