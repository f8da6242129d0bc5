#pragma once

/// A client of a JACK server that listens to one port of another client.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <jack/jack.h>

class JackProbe {
public:
    /// @throw std::runtime_error when there is no such server
    explicit JackProbe(const std::string& server);
    ~JackProbe();
    JackProbe(const JackProbe&) = delete;
    JackProbe& operator=(const JackProbe&) = delete;

    /// To the first output whose name matches the pattern. @return whether there is one
    bool connectTo(const std::string& pattern);
    /// The mean frequency of the next samples, in Hz; 0 where there is silence.
    double hertz(std::size_t samples = 9600);

private:
    struct Close {
        void operator()(jack_client_t* client) const { jack_client_close(client); }
    };
    static int Process(jack_nframes_t frames, void* self);

    std::unique_ptr<jack_client_t, Close> mClient;
    jack_port_t* mPort = nullptr;
    std::vector<float> mRecorded; // as long as what is wanted
    std::atomic<std::size_t> mCount = 0;
    std::atomic<bool> mRecords = false;
};
