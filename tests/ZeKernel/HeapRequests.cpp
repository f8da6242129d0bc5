#include "HeapRequests.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> requests = 0;

void* Request(std::size_t size) noexcept
{
    ++requests;
    return std::malloc(size ? size : 1);
}

} // namespace

std::size_t HeapRequests() { return requests; }

void* operator new(std::size_t size)
{
    if (void* memory = Request(size)) return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Request(size); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
