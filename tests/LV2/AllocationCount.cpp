#include "LV2/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> gAllocations = 0;

} // namespace

std::size_t allocationCount() { return gAllocations; }

#ifndef __SANITIZE_ADDRESS__ // which has its own

void* operator new(std::size_t size)
{
    ++gAllocations;
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

#endif
