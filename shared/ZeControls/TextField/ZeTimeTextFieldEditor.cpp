#include "TextField/ZeTimeTextFieldEditor.h"

#include "Foundation/NSLog.h"
#include "TextField/ZeTimeFormatMenu.h"

NS_CLASS_TABLE(ZeTimeTextFieldEditor, NSTextView, "")
NS_CLASS_TABLE_END

bool ZeTimeTextFieldEditor::initWithFrame(NSRect frame)
{
    if (!NSTextView::initWithFrame(frame)) return false;
    setFieldEditor(true);
    return true;
}

void ZeTimeTextFieldEditor::setDefaultMenu(NSMenu* menu)
{
    mDefaultMenu = menu;
    setMenu(menu);
}

bool ZeTimeTextFieldEditor::eventIndicatesContextMenu(const NSEvent* event) const
{
    return ZeEventIndicatesContextMenu(event);
}

NSMenu* ZeTimeTextFieldEditor::menuForEvent(NSEvent& event)
{
    if (!eventIndicatesContextMenu(&event)) return nullptr;
    if (const NSMenu* const shared = defaultMenuOfClass())
        for (const auto& item : shared->itemArray()) NSLog("%s", item->title()->utf8().c_str());
    return defaultMenu();
}
