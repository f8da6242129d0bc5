#pragma once

#include <cstddef>

/// How often this program has asked for memory with `new` so far, shared objects and other threads included.
std::size_t HeapRequests();
