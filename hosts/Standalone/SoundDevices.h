#pragma once

/// The sound devices of this machine, through JACK, Pulse or ALSA.

#include "Standalone/SoundOutput.h"

#include <optional>
#include <vector>

/// Every device that plays, the first one the best to take when none is asked for.
std::vector<SoundDevice> findSoundDevices();

/// The device of that name; the first there is when the name is empty.
std::optional<SoundDevice> findSoundDevice(const std::string& name);
/// An output on the device of that name; on the first there is when the name is empty. It has the wanted sample rate
/// where the device knows it, else the one that the device prefers. Null when there is no such device, or it can't be
/// opened now.
std::unique_ptr<SoundOutput> openSoundDevice(const std::string& name, double wantedSampleRate);
