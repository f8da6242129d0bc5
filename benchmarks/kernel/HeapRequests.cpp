#include "Measure.h"

namespace {

std::size_t requests = 0;

} // namespace

std::size_t heapRequests() { return requests; }

// `new` comes here too. glibc offers its own under this name, so that nothing has to be looked up.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size)
{
    ++requests;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    ++requests;
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size)
{
    ++requests;
    return __libc_realloc(memory, size);
}
}
