#pragma once

/// What a plug-in host offers an editor, read from its list of features. Everything but the write function may be
/// missing: then the calls do nothing, and the numbers say "not known".

#include "AppKit/NSWindowBackend.h"

#include <string>

#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

class EditorHost {
public:
    EditorHost(LV2UI_Write_Function writer, LV2UI_Controller controller, const LV2_Feature* const* features);

    double sampleRateHz() const { return mSampleRate; }             ///< 0 for not known
    double scale() const { return mScale; }                         ///< pixels per point; 0 for not known
    const std::string& windowTitle() const { return mWindowTitle; } ///< empty for not given
    NSNativeWindow parent() const { return mParent; } ///< where the editor goes; 0 for a window of its own
    LV2_URID_Map* map() const { return mMap; }        ///< null for none
    LV2_URID eventTransfer() const { return mEventTransfer; }

    void write(std::uint32_t port, std::uint32_t size, LV2_URID protocol, const void* data) const;
    void touch(std::uint32_t port, bool isHeld) const;
    void resize(CGSize pixels) const;

private:
    void readOptions(const LV2_Options_Option* options);
    double numberOf(const LV2_Options_Option& option) const;

    LV2UI_Write_Function mWrite;
    LV2UI_Controller mController; // the host's business, also when null
    LV2_URID_Map* mMap = nullptr;
    const LV2UI_Touch* mTouch = nullptr;
    const LV2UI_Resize* mResize = nullptr;
    NSNativeWindow mParent = 0;
    LV2_URID mEventTransfer = 0;
    double mSampleRate = 0.0, mScale = 0.0;
    std::string mWindowTitle;
};
