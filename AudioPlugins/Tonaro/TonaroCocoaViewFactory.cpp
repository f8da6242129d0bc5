#include "TonaroCocoaViewFactory.h"

#include "AppKit/NSNib.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSLog.h"
#include "TonaroFields.h"
#include "TonaroFormatPopUp.h"
#include "TonaroFrequencyScale.h"
#include "TonaroLengthStepper.h"
#include "TonaroNumberFormatters.h"
#include "TonaroToneView.h"

NS_CLASS_TABLE(TonaroCocoaViewFactory, NSObject, kTonaroViewBundleIdentifier)
    .outlet("uiFreshlyLoadedView", &TonaroCocoaViewFactory::uiFreshlyLoadedView)
NS_CLASS_TABLE_END

std::uint32_t TonaroCocoaViewFactory::interfaceVersion() const { return 0; }

RetainPtr<NSString> TonaroCocoaViewFactory::description() const { return NSString::string(" Cocoa View"); }

bool TonaroCocoaViewFactory::init()
{
    // only the interface description names these classes; naming them here too keeps the linker from leaving them out
    NSRegisterClass(TonaroFrequencyScale::staticClass());
    NSRegisterClass(TonaroFormatPopUp::staticClass());
    NSRegisterClass(TonaroFrequencyFormatter::staticClass());
    NSRegisterClass(TonaroGainFormatter::staticClass());
    NSRegisterClass(TonaroToneView::staticClass());
    NSRegisterClass(TonaroNumberField::staticClass());
    NSRegisterClass(TonaroLengthField::staticClass());
    NSRegisterClass(TonaroLengthStepper::staticClass());
    return NSObject::init();
}

NSView* TonaroCocoaViewFactory::uiViewForAudioUnit(AudioUnit unit, NSSize)
{
    if (!NSLoadNibNamed(NSString::string("TonaroCocoaView").get(), this) || !uiFreshlyLoadedView) {
        NSLog("Unable to load nib for view.");
        return nullptr;
    }
    // out of the outlet before the unit is asked, so that a failure that throws leaves nothing behind here
    RetainPtr<TonaroCocoaView> view = uiFreshlyLoadedView.take();
    view->setAU(unit);
    return NSAutorelease(std::move(view));
}
