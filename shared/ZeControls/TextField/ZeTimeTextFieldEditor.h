#pragma once

/// The field editor that offers the format menu while a position is typed.

#include "AppKit/NSMenu.h"
#include "AppKit/NSTextView.h"

class ZeTimeTextFieldEditor : public NSTextView {
public:
    NS_CLASS(ZeTimeTextFieldEditor)

    bool initWithFrame(NSRect frame) override; ///< is a field editor at once

    NSMenu* defaultMenu() const { return mDefaultMenu; } ///< null once the menu is gone
    void setDefaultMenu(NSMenu* menu);                   ///< not retained here, but as the view's menu

    /// A menu that all editors of the class share: its titles are logged when a context menu is asked for. Null here.
    virtual NSMenu* defaultMenuOfClass() const { return nullptr; }

    bool eventIndicatesContextMenu(const NSEvent* event) const; ///< as ZeEventIndicatesContextMenu
    /// The default menu for an event that asks for one, else null.
    NSMenu* menuForEvent(NSEvent& event) override;

private:
    WeakPtr<NSMenu> mDefaultMenu;
};
