#include "TonaroLengthStepper.h"

#include "AppKit/NSWindow.h"
#include "TonaroParameters.h"

NS_CLASS_TABLE(TonaroLengthStepper, NSStepper, "")
NS_CLASS_TABLE_END

void TonaroLengthStepper::takeUnitsValue()
{
    float seconds = 0;
    if (mUnit && AudioUnitGetParameter(mUnit, kParamLength, kAudioUnitScope_Global, 0, &seconds) == noErr)
        setFloatValue(seconds);
}

void TonaroLengthStepper::mouseDown(NSEvent& event)
{
    const RetainPtr<TonaroLengthStepper> keep(this);
    if (window() && !window()->makeFirstResponder(this)) return; // commits what is typed, unless it is refused
    takeUnitsValue();
    NSStepper::mouseDown(event);
}

void TonaroLengthStepper::keyDown(NSEvent& event)
{
    takeUnitsValue();
    NSStepper::keyDown(event);
}

void TonaroLengthStepper::scrollWheel(NSEvent& event)
{
    takeUnitsValue();
    NSStepper::scrollWheel(event);
}
