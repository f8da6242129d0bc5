#include "Standalone/SoundDevices.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <iostream>

#include <fcntl.h>
#include <rtaudio/RtAudio.h>
#include <unistd.h>

namespace {

constexpr unsigned kBufferFrames = 512;
constexpr int kTroubledLooks = 15; ///< so many looks in a row with new errors, and the device counts as gone
constexpr RtAudio::Api kInterfaces[] = {RtAudio::UNIX_JACK, RtAudio::LINUX_PULSE, RtAudio::LINUX_ALSA};

/// Keeps the libraries below from telling standard error about each device that isn't there.
class QuietStandardError {
public:
    QuietStandardError() : mKept(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0))
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (mKept >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
        if (nowhere >= 0) close(nowhere);
    }
    ~QuietStandardError()
    {
        if (mKept < 0) return;
        dup2(mKept, STDERR_FILENO);
        close(mKept);
    }
    QuietStandardError(const QuietStandardError&) = delete;
    QuietStandardError& operator=(const QuietStandardError&) = delete;

private:
    int mKept;
};

struct FoundDevice {
    RtAudio::Api interface;
    unsigned index; ///< for the library
    RtAudio::DeviceInfo info;
    std::string name;
};

/// Those of one interface, its default first.
std::vector<FoundDevice> devicesOf(RtAudio::Api interface)
{
    std::vector<FoundDevice> found;
    try {
        RtAudio audio(interface);
        audio.showWarnings(false);
        const unsigned count = audio.getCurrentApi() == interface ? audio.getDeviceCount() : 0;
        for (unsigned i = 0; i < count; ++i) {
            const RtAudio::DeviceInfo info = audio.getDeviceInfo(i);
            if (info.probed && info.outputChannels > 0)
                found.push_back({interface, i, info, RtAudio::getApiName(interface) + ":" + info.name});
        }
    } catch (const RtAudioError&) {
        // an interface that can't tell its devices has none
    }
    std::stable_partition(found.begin(), found.end(), [](const auto& device) { return device.info.isDefaultOutput; });
    return found;
}

double rateFor(const RtAudio::DeviceInfo& info, double wanted)
{
    const auto rates = std::span(info.sampleRates);
    if (std::any_of(rates.begin(), rates.end(), [wanted](unsigned rate) { return rate == wanted; })) return wanted;
    return info.preferredSampleRate > 0 || rates.empty() ? info.preferredSampleRate : rates.back();
}

class DeviceOutput final : public SoundOutput {
public:
    DeviceOutput(const FoundDevice& device, double wantedRate)
        : mAudio(device.interface),
          mName(device.name),
          mRate(rateFor(device.info, wantedRate)),
          mChannels(std::min(device.info.outputChannels, 2U))
    {
        mAudio.showWarnings(false);
        std::cerr.setstate(std::ios::failbit); // the library's own stream for what we tell in our words
        RtAudio::StreamParameters parameters;
        parameters.deviceId = device.index;
        parameters.nChannels = mChannels;
        RtAudio::StreamOptions options;
        options.streamName = "Tonaro";
        unsigned frames = kBufferFrames;
        mAudio.openStream(&parameters, nullptr, RTAUDIO_FLOAT32, static_cast<unsigned>(mRate), &frames, &play, this,
                          &options, &noteError);
        ourOutput = this; // the errors of opening are thrown
    }

    ~DeviceOutput() override
    {
        const QuietStandardError quiet;
        try {
            // a device that is gone would be waited for until it has played the last sample
            if (mAudio.isStreamRunning()) mIsAlive ? mAudio.stopStream() : mAudio.abortStream();
            if (mAudio.isStreamOpen()) mAudio.closeStream();
        } catch (const RtAudioError&) {
            // it ends either way
        }
        ourOutput = nullptr;
    }

    std::string name() const override { return mName; }
    double sampleRate() const override { return mRate; }

    void start(SoundSource& source) override
    {
        mSource = &source;
        try {
            mAudio.startStream();
        } catch (const RtAudioError&) {
            mFailed = true;
        }
    }

    bool isAlive() override
    {
        const unsigned warnings = mWarnings;
        mTroubledLooks = warnings == mSeenWarnings ? 0 : mTroubledLooks + 1;
        mSeenWarnings = warnings;
        mIsAlive = !mFailed && mAudio.isStreamRunning() && mTroubledLooks < kTroubledLooks;
        return mIsAlive;
    }

private:
    static int play(void* samples, void*, unsigned frames, double, RtAudioStreamStatus, void* self)
    {
        static_cast<DeviceOutput*>(self)->fill(static_cast<float*>(samples), frames);
        return 0;
    }

    /// The same samples on every channel, which stand side by side in the device's buffer.
    void fill(float* samples, unsigned frames)
    {
        while (frames > 0) {
            const std::span<float> block(mBlock.data(), std::min<std::size_t>(frames, mBlock.size()));
            mSource->render(block);
            for (const float sample : block) samples = std::fill_n(samples, mChannels, sample);
            frames -= static_cast<unsigned>(block.size());
        }
    }

    // The library gives this call no object to go by; only one output is open at a time.
    static void noteError(RtAudioError::Type type, const std::string&)
    {
        DeviceOutput* const output = ourOutput;
        if (!output) return;
        if (type == RtAudioError::WARNING || type == RtAudioError::DEBUG_WARNING)
            ++output->mWarnings;
        else
            output->mFailed = true;
    }

    static inline std::atomic<DeviceOutput*> ourOutput = nullptr;

    RtAudio mAudio;
    std::string mName;
    double mRate;
    unsigned mChannels;
    SoundSource* mSource = nullptr;
    std::array<float, 256> mBlock{};
    std::atomic<unsigned> mWarnings = 0; ///< an underrun is one; a device that was pulled out gives them without end
    std::atomic<bool> mFailed = false;
    unsigned mSeenWarnings = 0;
    int mTroubledLooks = 0;
    bool mIsAlive = true;
};

/// Calls `take` with each device of that name, or with each one when it is empty, until it says that it is done.
template <typename Take> void forEachDevice(const std::string& name, Take take)
{
    const QuietStandardError quiet;
    for (const RtAudio::Api interface : kInterfaces)
        for (const FoundDevice& found : devicesOf(interface))
            if ((name.empty() || found.name == name) && take(found)) return;
}

SoundDevice factsOf(const FoundDevice& found)
{
    return {found.name, found.info.outputChannels, rateFor(found.info, 0)};
}

} // namespace

std::vector<SoundDevice> findSoundDevices()
{
    std::vector<SoundDevice> devices;
    forEachDevice("", [&](const FoundDevice& found) {
        devices.push_back(factsOf(found));
        return false;
    });
    return devices;
}

std::optional<SoundDevice> findSoundDevice(const std::string& name)
{
    std::optional<SoundDevice> device;
    forEachDevice(name, [&](const FoundDevice& found) {
        device = factsOf(found);
        return true;
    });
    return device;
}

std::unique_ptr<SoundOutput> openSoundDevice(const std::string& name, double wantedSampleRate)
{
    std::unique_ptr<SoundOutput> output;
    forEachDevice(name, [&](const FoundDevice& found) {
        try {
            output = std::make_unique<DeviceOutput>(found, wantedSampleRate);
        } catch (const RtAudioError&) {
            // another one may do
        }
        return output != nullptr;
    });
    return output;
}
