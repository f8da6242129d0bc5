#pragma once

/// The strip above an editor: a button that plays and stops the tone, its level, and where it is heard.

#include "AppKit/NSButton.h"
#include "AppKit/NSTextField.h"
#include "Standalone/LevelMeter.h"
#include "Standalone/TonePlayer.h"

/// The strip's ground.
class TransportView final : public NSView {
public:
    NS_CLASS(TransportView)
    void drawRect(NSRect dirty) override;
};

class Transport final : public NSObject {
public:
    NS_CLASS(Transport)

    /// @param player  outlives this object. @return false where the interface description can't be read
    bool initWithPlayer(TonePlayer* player);

    NSView* view() const { return mView; }
    void update(); ///< shows what the player does
    void playOrStop(NSObject* sender);

private:
    TonePlayer* mPlayer = nullptr;
    Outlet<NSView> mView; // filled by the interface description, like the ones below
    Outlet<NSButton> mButton;
    Outlet<LevelMeter> mMeter;
    Outlet<NSTextField> mHeard;
};
