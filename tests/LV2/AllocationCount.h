#pragma once

/// Counts what the whole process allocates with `new`, shared objects included; nothing under the address sanitizer.

#include <cstddef>

std::size_t allocationCount(); ///< since the process started
