#pragma once

/// The cell that hands out a field editor of its own, with the format menu.

#include "AppKit/NSTextFieldCell.h"
#include "TextField/ZeTimeTextFieldEditor.h"

class ZeTimeTextFieldCell final : public NSTextFieldCell {
public:
    NS_CLASS(ZeTimeTextFieldCell)

    /// One and the same editor at each call, made at the first; it gets the cell's menu each time.
    NSTextView* fieldEditorForView(NSView& view) override;

    ZeTimeTextFieldEditor* fieldEditor() const { return fieldEditor_; }
    void setFieldEditor(ZeTimeTextFieldEditor* editor) { fieldEditor_ = editor; }
    NSMenu* defaultMenu() const { return defaultMenu_; }
    void setDefaultMenu(NSMenu* menu) { defaultMenu_ = menu; }

private:
    RetainPtr<ZeTimeTextFieldEditor> fieldEditor_;
    RetainPtr<NSMenu> defaultMenu_;
};
