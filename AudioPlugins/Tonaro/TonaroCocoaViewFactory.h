#pragma once

/// The factory that a host asks for the editor of a unit.
///
/// Failure: a null view, and a log line that says why.

#include "AudioUnit/AUCocoaUIView.h"
#include "TonaroCocoaView.h"

class TonaroCocoaViewFactory : public NSObject, public AUCocoaUIBase {
public:
    NS_CLASS(TonaroCocoaViewFactory)

    bool init() override;
    std::uint32_t interfaceVersion() const override;  ///< 0
    RetainPtr<NSString> description() const override; ///< " Cocoa View"
    /// A view bound to `unit`, autoreleased. It has the size of its interface description, whatever is preferred.
    NSView* uiViewForAudioUnit(AudioUnit unit, NSSize preferredSize) override;

private:
    Outlet<TonaroCocoaView>
        uiFreshlyLoadedView; ///< filled by the interface description, emptied when the view is handed out
};
