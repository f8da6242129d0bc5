#include "LV2/JackProbe.h"

#include "ui/Program.h"

#include <algorithm>
#include <stdexcept>

#include <poll.h>

JackProbe::JackProbe(const std::string& server)
{
    jack_set_error_function([](const char*) {}); // while the server starts, it complains at every attempt
    const double until = SecondsNow() + 10;
    while (!mClient && SecondsNow() < until) {
        poll(nullptr, 0, 50); // the server takes a moment to start
        mClient.reset(jack_client_open("probe", static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                       nullptr, server.c_str()));
    }
    if (!mClient) throw std::runtime_error("no JACK server");
    mPort = jack_port_register(mClient.get(), "in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    jack_set_process_callback(mClient.get(), Process, this);
    jack_activate(mClient.get());
}

JackProbe::~JackProbe() { jack_deactivate(mClient.get()); }

bool JackProbe::connectTo(const std::string& pattern)
{
    const auto release = [](const char** names) { jack_free(names); };
    const std::unique_ptr<const char*, decltype(release)> names(
        jack_get_ports(mClient.get(), pattern.c_str(), JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput), release);
    return names && jack_connect(mClient.get(), *names, jack_port_name(mPort)) == 0;
}

int JackProbe::Process(jack_nframes_t frames, void* self)
{
    auto& probe = *static_cast<JackProbe*>(self);
    if (!probe.mRecords) return 0;
    const auto* const samples = static_cast<const float*>(jack_port_get_buffer(probe.mPort, frames));
    const std::size_t count = std::min<std::size_t>(frames, probe.mRecorded.size() - probe.mCount);
    std::copy_n(samples, count, probe.mRecorded.begin() + static_cast<std::ptrdiff_t>(probe.mCount.load()));
    probe.mCount += count;
    return 0;
}

double JackProbe::hertz(std::size_t samples)
{
    mRecorded.assign(samples, 0.0f);
    mCount = 0;
    mRecords = true;
    for (const double until = SecondsNow() + 5; mCount < samples && SecondsNow() < until;) poll(nullptr, 0, 10);
    mRecords = false;
    std::vector<double> crossings;
    for (std::size_t n = 1; n < mCount; ++n) {
        const double before = mRecorded[n - 1], after = mRecorded[n];
        if (before < 0 && after >= 0) crossings.push_back(static_cast<double>(n) - after / (after - before));
    }
    if (crossings.size() < 2) return 0;
    return static_cast<double>(crossings.size() - 1) / (crossings.back() - crossings.front()) *
           jack_get_sample_rate(mClient.get());
}
