#pragma once

/// What the process sends and receives over sockets, the host's own connection left out. The functions of the C library
/// that do it are replaced for the whole process, so it doesn't matter which library calls them.

#include <cstdint>

struct Traffic {
    std::uint64_t sent = 0, received = 0; ///< bytes
};

Traffic TrafficUntilNow();
/// Bytes over this descriptor are not counted.
void LeaveOutOfTraffic(int descriptor);
