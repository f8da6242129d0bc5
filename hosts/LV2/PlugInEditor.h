#pragma once

/// One open editor in a plug-in host: the view, its window, and the unit that stands for the host's ports.
///
/// Belongs to the thread that made it, as does every other one of the process. Where the host gives a parent window the
/// editor is shown there at once; else it has a window of its own, which `show` brings up.

#include "LV2/EditorHost.h"
#include "LV2/EditorProcess.h"
#include "LV2/PortUnit.h"

#include <optional>

#include <lv2/atom/forge.h>

class ZeTimeTextField;

class PlugInEditor final : private PortHost {
public:
    /// @throw std::runtime_error that says why there is no editor
    PlugInEditor(const EditorHost& host, const std::string& bundlePath);
    ~PlugInEditor();
    PlugInEditor(const PlugInEditor&) = delete;
    PlugInEditor& operator=(const PlugInEditor&) = delete;

    NSNativeWindow nativeWindow() const { return mWindow ? mWindow->nativeWindow() : 0; } ///< 0 once closed
    void portEvent(std::uint32_t port, std::uint32_t size, LV2_URID protocol, const void* data);
    /// Does what is due, for every editor of the process. @return false once the person closed the window
    bool idle();
    void show(); ///< also after the person closed it
    void hide();

private:
    class FormatObserver;
    struct Names {
        LV2_URID patchGet, patchSet, patchProperty, patchValue, timeFormat;
    };

    void writePort(AudioUnitParameterID port, float value) override;
    void touchPort(AudioUnitParameterID port, bool isHeld) override;
    void writeTimeFormat(std::uint32_t format) override;

    void openWindow();
    void closeWindow();
    void mapNames();
    /// About the time format: `format` to be set, or none where the message asks for it.
    void sendMessage(LV2_URID kind, std::optional<std::uint32_t> format = {});
    void readMessage(std::uint32_t size, const void* data);
    void formatPicked();

    const EditorProcess mProcess;
    const EditorHost mHost;
    Names mNames{};
    LV2_Atom_Forge mForge{};
    PortUnit mUnit;
    RetainPtr<NSWindow> mWindow; ///< null where it couldn't be opened anew
    RetainPtr<FormatObserver> mFormatObserver;
    RetainPtr<ZeTimeTextField> mLengthField; ///< whose format is the unit's; null where the view has none
};
