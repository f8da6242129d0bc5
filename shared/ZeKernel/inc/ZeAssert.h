#pragma once

/// The fatal assertion of the kernel's bounded copies.

namespace ZeCRT {

/// Reports the place and the broken expression through the C library's assertion routine, in every build type, and ends
/// the process: "tonaro: shared/ZeKernel/inc/ZeString:84: strcpy_s: Assertion `this->size() <= DestSize-1' failed."
[[noreturn]] void assertionFailed(const char* expression, const char* file, unsigned line, const char* function);

} // namespace ZeCRT
