#include "TextField/ZeTimeTextFieldCell.h"

NS_CLASS_TABLE(ZeTimeTextFieldCell, NSTextFieldCell, "")
NS_CLASS_TABLE_END

NSTextView* ZeTimeTextFieldCell::fieldEditorForView(NSView&)
{
    if (!fieldEditor_) {
        fieldEditor_ = make<ZeTimeTextFieldEditor>();
        fieldEditor_->setFieldEditor(true);
    }
    fieldEditor_->setDefaultMenu(defaultMenu_);
    return fieldEditor_;
}
