#pragma once

/// The stepper of the length. Each step starts from what the unit holds: what was typed a moment ago hasn't come back
/// as an event yet.

#include "AppKit/NSStepper.h"
#include "Foundation/NSClass.h"
#include "TonaroUnitFollower.h"

class TonaroLengthStepper final : public NSStepper, public TonaroUnitFollower {
public:
    NS_CLASS(TonaroLengthStepper)

    void setAU(AudioUnit unit) override { mUnit = unit; }
    void mouseDown(NSEvent& event) override;
    void keyDown(NSEvent& event) override;
    void scrollWheel(NSEvent& event) override;

private:
    void takeUnitsValue();

    AudioUnit mUnit = nullptr;
};
