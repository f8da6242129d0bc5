#include "TonaroFormatPopUp.h"

#include <algorithm>

NS_CLASS_TABLE(TonaroFormatPopUp, NSPopUpButton, "")
    .outlet("field", &TonaroFormatPopUp::field).action("formatChosen:", &TonaroFormatPopUp::formatChosen)
NS_CLASS_TABLE_END

void TonaroFormatPopUp::awakeFromNib()
{
    if (!field.get()) return;
    removeAllItems();
    const RetainPtr<NSMenu> menu = field.get()->createDefaultMenuWithTarget(nullptr);
    for (const auto& offered : menu->itemArray()) {
        addItemWithTitle(offered->title());
        menuOfItems()->itemArray().back()->setTag(offered->tag());
    }
    setTarget(this);
    setAction("formatChosen:");
    field.call(&NSObject::addObserverForKeyPath, this, "format"_ns.get(), nullptr);
    showFormat();
}

void TonaroFormatPopUp::observeValueForKeyPath(const NSString*, NSObject*, void*) { showFormat(); }

void TonaroFormatPopUp::showFormat()
{
    const auto& items = menuOfItems()->itemArray();
    const auto shown = std::find_if(items.begin(), items.end(), [this](const auto& item) {
        return item->tag() == field.call(&ZeTimeTextField::format);
    });
    selectItemAtIndex(shown == items.end() ? -1 : static_cast<int>(shown - items.begin()));
}

void TonaroFormatPopUp::formatChosen(NSObject*)
{
    const int chosen = indexOfSelectedItem();
    if (chosen < 0) return;
    const auto type = menuOfItems()->itemArray()[static_cast<std::size_t>(chosen)]->tag();
    field.call(&ZeTimeTextField::setFormat, static_cast<unsigned>(type));
}
