#pragma once

/// One tone unit and the editors on it.

#include "AppKit/NSWindow.h"
#include "Standalone/Options.h"
#include "Standalone/Transport.h"
#include "TonaroCocoaView.h"
#include "TonaroSettingText.h"
#include "ToneUnit/ToneUnit.h"

#include <cstdio>

/// Prints what reaches the unit, a line each, flushed at once: "begin 1", "set 1 440", "end 1".
class UnitTrace final : public ToneUnitObserver {
public:
    explicit UnitTrace(std::FILE* file) : mFile(file) {}
    void gestureBegan(AudioUnitParameterID parameter) override;
    void parameterSet(AudioUnitParameterID parameter, float requested) override;
    void gestureEnded(AudioUnitParameterID parameter) override;

private:
    std::FILE* mFile;
};

class Session {
public:
    /// Makes the unit and gives it the settings. @throw UsageError, InputError
    explicit Session(const Options& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// A window with an editor on the unit and the strip of the player above it, on the application's display, not
    /// shown yet. Tab reaches the editor's controls first, then the strip's. @throw InputError
    NSWindow* openEditor(double scale);
    TonaroCocoaView* editor(std::size_t index) const;
    TonePlayer& player() { return mPlayer; } ///< of the unit's tone, one for all windows
    std::size_t openEditors() const { return mWindows.size(); }
    /// Called when the last editor closed.
    void setLastClosedHandler(std::function<void()> handler) { mLastClosed = std::move(handler); }

private:
    struct OpenEditor {
        RetainPtr<NSWindow> window;
        RetainPtr<TonaroCocoaView> editor;
        RetainPtr<Transport> transport;
    };
    void forget(NSWindow* window);
    void updateTransports();
    /// Beside the windows that are there, in rows, as far as the screen reaches; further ones lie over them.
    NSPoint placeForNext(NSSize size) const;

    UnitTrace mTrace{stdout};
    ToneUnit mUnit;
    TonePlayer mPlayer{mUnit};
    std::vector<OpenEditor> mWindows;
    std::function<void()> mLastClosed;
};
