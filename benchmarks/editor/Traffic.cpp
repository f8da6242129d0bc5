#include "Traffic.h"

#include <atomic>
#include <dlfcn.h>

#include <sys/socket.h>
#include <sys/uio.h>

namespace {

std::atomic<std::uint64_t> gSent = 0, gReceived = 0;
std::atomic<std::uint64_t> gLeftOut = 0; // a bit for each of the first 64 descriptors

bool IsCounted(int descriptor)
{
    return descriptor < 0 || descriptor >= 64 || !(gLeftOut >> static_cast<unsigned>(descriptor) & 1);
}

ssize_t Count(std::atomic<std::uint64_t>& total, int descriptor, ssize_t result)
{
    if (result > 0 && IsCounted(descriptor)) total += static_cast<std::uint64_t>(result);
    return result;
}

/// The C library's function of that name.
template <typename Function> Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

Traffic TrafficUntilNow() { return {gSent, gReceived}; }

void LeaveOutOfTraffic(int descriptor)
{
    if (descriptor >= 0 && descriptor < 64) gLeftOut |= std::uint64_t{1} << static_cast<unsigned>(descriptor);
}

#define TRAFFIC_FUNCTION(total, name, parameters, ...)                                                                 \
    extern "C" __attribute__((visibility("default"))) ssize_t name parameters                                          \
    {                                                                                                                  \
        static auto* const next = Next<ssize_t parameters>(#name);                                                     \
        return Count(total, descriptor, next(descriptor, __VA_ARGS__));                                                \
    }

TRAFFIC_FUNCTION(gSent, writev, (int descriptor, const iovec* parts, int count), parts, count)
TRAFFIC_FUNCTION(gSent, sendmsg, (int descriptor, const msghdr* message, int flags), message, flags)
TRAFFIC_FUNCTION(gSent, send, (int descriptor, const void* bytes, size_t size, int flags), bytes, size, flags)
TRAFFIC_FUNCTION(gReceived, recvmsg, (int descriptor, msghdr* message, int flags), message, flags)
TRAFFIC_FUNCTION(gReceived, recv, (int descriptor, void* bytes, size_t size, int flags), bytes, size, flags)
