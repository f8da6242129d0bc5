#include "AppKit/NSPopUpButtonCell.h"

#include "AppKit/NSControlDrawing.h"
#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSClass.h"
#include "Foundation/NSCoder.h"

NS_CLASS_TABLE(NSPopUpButtonCell, NSActionCell, "")
NS_CLASS_TABLE_END

NSPopUpButtonCell::NSPopUpButtonCell() : mMenu(make<NSMenu>()) {}

bool NSPopUpButtonCell::initWithCoder(NSCoder& coder)
{
    if (!NSActionCell::initWithCoder(coder)) return false;
    if (auto* menu = asKind<NSMenu>(coder.decodeObjectForKey("menu").get())) mMenu = menu;
    const auto& items = mMenu->itemArray();
    const auto marked =
        std::find_if(items.begin(), items.end(), [](const auto& item) { return item->state() == NSOnState; });
    selectItemAtIndex(marked != items.end() ? static_cast<int>(marked - items.begin()) : 0);
    return true;
}

void NSPopUpButtonCell::removeAllItems()
{
    selectItemAtIndex(-1);
    mMenu->removeAllItems();
}

void NSPopUpButtonCell::addItemWithTitle(const NSString* title)
{
    mMenu->addItemWithTitle(title, nullptr, nullptr);
    if (mSelectedIndex < 0) selectItemAtIndex(0);
}

int NSPopUpButtonCell::numberOfItems() const { return static_cast<int>(mMenu->itemArray().size()); }

const NSString* NSPopUpButtonCell::itemTitleAtIndex(int index) const
{
    if (index < 0 || index >= numberOfItems()) return nullptr;
    return mMenu->itemArray()[static_cast<std::size_t>(index)]->title();
}

void NSPopUpButtonCell::selectItemAtIndex(int index)
{
    if (index < -1 || index >= numberOfItems()) return;
    mSelectedIndex = index;
    int row = 0;
    for (const auto& item : mMenu->itemArray()) item->setState(row++ == index ? NSOnState : NSOffState);
    NSActionCell::setObjectValue(NSNumber::numberWithInt(index).get());
}

void NSPopUpButtonCell::selectItemWithTitle(const NSString* title)
{
    for (int i = 0; i < numberOfItems(); ++i)
        if (const NSString* other = itemTitleAtIndex(i); other && other->isEqualToString(title))
            return selectItemAtIndex(i);
}

void NSPopUpButtonCell::setObjectValue(NSObject* value)
{
    const auto* number = asKind<NSNumber>(value);
    selectItemAtIndex(number ? number->intValue() : -1);
}

void NSPopUpButtonCell::drawWithFrame(NSRect frame, NSView& view)
{
    using enum NSAppearanceColorName;
    const CGContextRef context = NSGraphicsContext::currentContext();
    NSBoxStyle style = {disabledFieldColor, disabledFieldBorderColor};
    if (isEnabled()) {
        style.fill = isHighlighted() ? fieldPressedColor : fieldColor;
        style.border = isHovered() ? fieldHoverBorderColor : fieldBorderColor;
        if (NSShowsFocus(view)) style.border = controlAccentColor;
    }
    NSDrawBox(context, frame, style);

    constexpr CGFloat kChevronRoom = 26;
    const NSRect text = CGRectMake(frame.origin.x + NSMetrics::textInset, frame.origin.y,
                                   frame.size.width - NSMetrics::textInset - kChevronRoom, frame.size.height);
    NSDrawLine(context, itemTitleAtIndex(mSelectedIndex), font(), text, NSLeftTextAlignment,
               isEnabled() ? NSAppearanceColorName::textColor : disabledControlTextColor);
    NSDrawChevron(context, {CGRectGetMaxX(frame) - kChevronRoom / 2, CGRectGetMidY(frame)}, NSChevron::down,
                  isEnabled() ? secondaryLabelColor : disabledControlTextColor);
}
