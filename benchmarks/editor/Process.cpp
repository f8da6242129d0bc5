#include "Process.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <malloc.h>

namespace {

double SecondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::size_t EntriesOf(const char* folder)
{
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

} // namespace

double Now() { return SecondsOf(CLOCK_MONOTONIC); }
double ProcessSeconds() { return SecondsOf(CLOCK_PROCESS_CPUTIME_ID); }
double ThreadSeconds() { return SecondsOf(CLOCK_THREAD_CPUTIME_ID); }

double ThreadSeconds(pthread_t thread)
{
    clockid_t clock{};
    return pthread_getcpuclockid(thread, &clock) == 0 ? SecondsOf(clock) : 0.0;
}

void SleepUntil(double seconds)
{
    const double whole = std::floor(seconds);
    const timespec time{static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) != 0) {
    }
}

Memory MemoryNow()
{
    Memory memory;
    std::ifstream in("/proc/self/smaps_rollup");
    in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    std::string name, unit;
    for (double kilobytes = 0; in >> name >> kilobytes >> unit;) {
        if (name == "Private_Dirty:") memory.own = kilobytes / 1024;
        if (name == "Shared_Dirty:") memory.shared = kilobytes / 1024;
    }
    return memory;
}

double BytesInUse() { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd); }
std::size_t ThreadsNow() { return EntriesOf("/proc/self/task"); }
std::size_t DescriptorsNow() { return EntriesOf("/proc/self/fd"); }
