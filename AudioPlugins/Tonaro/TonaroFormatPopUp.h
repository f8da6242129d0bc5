#pragma once

/// Shows in which format a position field writes, and offers the formats of the field's own menu.
///
/// The interface description connects `field`. A format that the menu doesn't have shows as nothing.

#include "AppKit/NSPopUpButton.h"
#include "Foundation/NSClass.h"
#include "TextField/ZeTimeTextField.h"

class TonaroFormatPopUp final : public NSPopUpButton {
public:
    NS_CLASS(TonaroFormatPopUp)

    void awakeFromNib() override;
    void observeValueForKeyPath(const NSString* keyPath, NSObject* object, void* context) override;
    void formatChosen(NSObject* sender);

private:
    void showFormat();

    Outlet<ZeTimeTextField> field;
};
