#pragma once

#include <cstddef>

/// How often this program has asked for memory with `new` so far.
std::size_t HeapRequests();
