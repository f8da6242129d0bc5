#pragma once

/// Lets go of many objects of which some may fail. For sources of this folder.

#include "Foundation/RetainPtr.h"

#include <exception>
#include <vector>

/// Lets go of each object, and of those that come in meanwhile. @return the first exception; null when there was none
std::exception_ptr NSReleaseAll(std::vector<RetainPtr<NSObject>>& objects) noexcept;
