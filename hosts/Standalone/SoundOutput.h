#pragma once

/// Where a tone is heard: a sound device, or nowhere.
///
/// An output calls its source from the birth of the output to its end, on a thread of its own or on the run loop; after
/// the destructor it calls no more.

#include <functional>
#include <memory>
#include <span>
#include <string>

/// Gives samples when an output asks for them. An implementation neither allocates nor locks.
class SoundSource {
public:
    virtual void render(std::span<float> samples) noexcept = 0; ///< the next ones, mono, full scale 1.0

protected:
    ~SoundSource() = default;
};

class SoundOutput {
public:
    virtual ~SoundOutput() = default;
    virtual std::string name() const = 0;        ///< for a person; empty where nothing is heard
    virtual double sampleRate() const = 0;       ///< Hz
    virtual void start(SoundSource& source) = 0; ///< once; the source outlives this object
    /// Whether the device is still there. Asked every now and then while it plays, on the thread of the user interface.
    virtual bool isAlive() = 0;
};

/// Makes an output at about that sample rate; null where there is none to be had.
using SoundOpener = std::function<std::unique_ptr<SoundOutput>(double sampleRate)>;

struct SoundDevice {
    std::string name; ///< with its interface in front: "jack:system"
    unsigned channels;
    double sampleRate; ///< Hz, that it prefers
};
