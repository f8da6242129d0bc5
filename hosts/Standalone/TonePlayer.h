#pragma once

/// Plays a unit's tone on an output, and follows what becomes of it.
///
/// An output is open only while a tone plays, so that a quiet program costs nothing. Where there is no device, and
/// where one goes away in the middle of a tone, the tone goes on in silence and by the clock; one line on standard
/// error says so.

#include "CoreFoundation/CFRunLoop.h"
#include "Standalone/SoundOutput.h"
#include "Standalone/ToneStream.h"

class TonePlayer {
public:
    enum class Heard {
        unknown, ///< nobody has looked for a device yet
        muted,
        nowhere, ///< there is no device
        device,
    };

    /// @param unit  outlives the player
    explicit TonePlayer(const ToneUnit& unit) : mStream(unit) {}
    ~TonePlayer();
    TonePlayer(const TonePlayer&) = delete;
    TonePlayer& operator=(const TonePlayer&) = delete;

    /// Called after anything below has changed.
    void setChangeHandler(std::function<void()> handler) { mChanged = std::move(handler); }

    void mute(); ///< plays in silence, as it was asked to
    /// Plays on what `open` gives. @param name  of the device that it would give now; empty where there is none
    void useDevice(std::string name, SoundOpener open);
    Heard heard() const { return mHeard; }
    const std::string& deviceName() const { return mDeviceName; }

    void play(); ///< from the start
    void stop(); ///< fades out
    bool isPlaying() const { return mOutput && !mStops; }
    float level() const { return mLevel; } ///< of the last moment, 1.0 for full scale

private:
    void openOutput();
    void goOnInSilence(); ///< the device is gone
    void look();
    void finish();
    void tell() const;

    ToneStream mStream;
    SoundOpener mOpen;
    std::function<void()> mChanged;
    Heard mHeard = Heard::unknown;
    std::string mDeviceName;
    std::unique_ptr<SoundOutput> mOutput;
    RetainPtr<CFRunLoopTimer> mTimer;
    bool mStops = false;
    float mLevel = 0;
    std::uint64_t mSeenPosition = 0;
    int mStillLooks = 0; // in a row that found the position unchanged
};
