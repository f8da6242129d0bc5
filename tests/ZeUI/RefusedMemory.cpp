#include "RefusedMemory.h"

#include <new>

namespace {

bool refuses = false;

} // namespace

RefusedMemory::RefusedMemory() { refuses = true; }
RefusedMemory::~RefusedMemory() { refuses = false; }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return refuses ? nullptr : ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new(size, tag); }
