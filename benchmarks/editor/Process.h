#pragma once

/// What the process itself holds and has used.

#include <cstddef>
#include <pthread.h>

double Now();                    ///< seconds of the monotonic clock
double ProcessSeconds();         ///< of processor time, all threads
double ThreadSeconds();          ///< of the calling thread
double ThreadSeconds(pthread_t); ///< of another one
void SleepUntil(double seconds); ///< of `Now`

struct Memory {
    double own = 0;    ///< MiB written by this process alone
    double shared = 0; ///< MiB written, that another process maps, too
};
Memory MemoryNow();
double BytesInUse(); ///< of the C library's heap
std::size_t ThreadsNow();
std::size_t DescriptorsNow();
