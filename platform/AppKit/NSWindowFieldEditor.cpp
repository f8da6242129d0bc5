#include "AppKit/NSTextView.h"
#include "AppKit/NSWindow.h"

NSTextView* NSWindow::fieldEditor()
{
    if (!mFieldEditor) {
        auto editor = make<NSTextView>();
        editor->setFieldEditor(true);
        mFieldEditor = editor;
    }
    return static_cast<NSTextView*>(mFieldEditor.get());
}
