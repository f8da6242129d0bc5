#pragma once

/// The sounding half of the plug-in: control ports in, samples out, messages both ways.
///
/// The tone repeats its length for as long as the plug-in runs: a sweep starts over, a steady tone goes on without a
/// gap. A transport that starts to roll begins the sweep anew.
///
/// A control that is out of its range is used as `HeldValue` says; not-a-number counts as the default. Ports may be
/// left unconnected.
///
/// `run` neither allocates nor locks, and calls nothing of the system.

#include "LV2/TonaroPorts.h"
#include "ToneUnit/ToneRenderer.h"

#include <array>
#include <atomic>
#include <memory>
#include <optional>

#include <lv2/atom/forge.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>

class ToneProcessor {
public:
    /// Null when the host offers no `urid:map`, or a sample rate at which there is no tone (`IsToneSampleRate`).
    static std::unique_ptr<ToneProcessor> create(double sampleRateHz, const LV2_Feature* const* features);

    void connect(std::uint32_t port, void* data);
    void activate() { mRenderer.reset(); }
    void run(std::uint32_t frames);

    // May be called while `run` does its work.
    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle) const;
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

private:
    /// What the host calls the names that messages and states are made of.
    struct Names {
        explicit Names(LV2_URID_Map& map);
        LV2_URID atomInt, atomLong, atomFloat, atomDouble, atomURID;
        LV2_URID patchGet, patchSet, patchProperty, patchValue;
        LV2_URID timePosition, timeSpeed;
        LV2_URID timeFormat;
    };

    ToneProcessor(double sampleRateHz, LV2_URID_Map& map);
    ToneSettings settings() const;
    void readMessages();
    void readMessage(const LV2_Atom_Object& message);
    void followTransport(const LV2_Atom_Object& position);
    void setTimeFormat(const LV2_Atom& format);
    std::optional<double> number(const LV2_Atom* atom) const;
    void writeNotifications();

    const double mSampleRate; // Hz
    const Names mNames;
    LV2_Atom_Forge mForge;
    std::array<const float*, kParamCount> mControls{};
    const LV2_Atom_Sequence* mMessages = nullptr;
    LV2_Atom_Sequence* mNotifications = nullptr;
    std::array<float*, 2> mOutputs{};

    ToneRenderer mRenderer;
    bool mRolls = false;
    std::atomic<std::uint32_t> mTimeFormat = kTonaroDefaultFormat;
    std::atomic<bool> mTellsTimeFormat = false;
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
};
