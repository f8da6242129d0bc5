#include "AppKit/NSNibElements.h"

#include "AppKit/NSBox.h"
#include "AppKit/NSButton.h"
#include "AppKit/NSButtonCell.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSMenu.h"
#include "AppKit/NSPopUpButton.h"
#include "AppKit/NSPopUpButtonCell.h"
#include "AppKit/NSSlider.h"
#include "AppKit/NSSliderCell.h"
#include "AppKit/NSStepper.h"
#include "AppKit/NSStepperCell.h"
#include "AppKit/NSTextField.h"
#include "AppKit/NSTextFieldCell.h"
#include "Foundation/NSNumberFormatter.h"

namespace {

constexpr NSNibElement kElements[] = {
    {"customObject", &NSObject::staticClass, nullptr},
    {"customView", &NSView::staticClass, nullptr},
    {"view", &NSView::staticClass, nullptr},
    {"box", &NSBox::staticClass, nullptr},
    {"slider", &NSSlider::staticClass, "sliderCell"},
    {"sliderCell", &NSSliderCell::staticClass, nullptr},
    {"textField", &NSTextField::staticClass, "textFieldCell"},
    {"textFieldCell", &NSTextFieldCell::staticClass, nullptr},
    {"popUpButton", &NSPopUpButton::staticClass, "popUpButtonCell"},
    {"popUpButtonCell", &NSPopUpButtonCell::staticClass, nullptr},
    {"button", &NSButton::staticClass, "buttonCell"},
    {"buttonCell", &NSButtonCell::staticClass, nullptr},
    {"stepper", &NSStepper::staticClass, "stepperCell"},
    {"stepperCell", &NSStepperCell::staticClass, nullptr},
    {"menu", &NSMenu::staticClass, nullptr},
    {"menuItem", &NSMenuItem::staticClass, nullptr},
    {"numberFormatter", &NSNumberFormatter::staticClass, nullptr},
    {"color", &NSColor::staticClass, nullptr},
};

} // namespace

const NSNibElement* NSNibElementNamed(std::string_view name)
{
    for (const NSNibElement& element : kElements)
        if (name == element.name) return &element;
    return nullptr;
}
