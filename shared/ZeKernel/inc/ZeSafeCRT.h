#pragma once

/// What the kernel asks of the C library: its start-up settings, wide printing into an array, a checked copy.
///
/// Each source file that includes this header applies the start-up settings while the module is loaded: the soft limit
/// of open files becomes 7168, whatever it was (the hard limit stays; a refusal is ignored), and the character locale
/// becomes UTF-8. Doing it several times changes nothing more.
///
/// Failure: printing answers a negative count; a copy that doesn't fit is a fatal assertion.

#include "ZeAssert.h"

#include <cstdarg>
#include <cstddef>
#include <cwchar>

#include <langinfo.h>
#include <sys/resource.h>

namespace ZeCRT {

/// Whether the locale in force writes characters as UTF-8. Compares in place, since every print asks.
inline bool isCharacterLocaleUTF8()
{
    const char* const codeset = nl_langinfo(CODESET);
    return codeset[0] == 'U' && codeset[1] == 'T' && codeset[2] == 'F' && codeset[3] == '-' && codeset[4] == '8' &&
           codeset[5] == '\0';
}

/// Makes the character locale UTF-8 for the whole process, "C.UTF-8" where none is named "UTF-8". Does nothing where
/// the locale in force is UTF-8 already, so that a host's own choice of language stays.
void setCharacterLocale();

/// Sets the soft limit of open files and the character locale. @param limit receives the limits as they were asked for
void applyStartUpSettings(rlimit& limit);

namespace {

rlimit init;

struct StartUp {
    StartUp() { applyStartUpSettings(init); }
};
const StartUp startUp;

} // namespace

/// Prints into `buffer`, an array of `count` elements, the terminator included, and sets the character locale first.
///
/// `%c` takes any code point, as `%lc` does. @return the number of elements before the terminator; negative where the
/// text doesn't fit (it is cut to its first count - 1 elements) or the format is in error (then `buffer` holds what was
/// printed up to there). The text is always terminated, unless `count` is 0.
///
/// swprintf_s(buffer, 16, L"%02u%c%d", 7u, 0x20AC, -1) writes "07€-1" and answers 5.
int swprintf_s(wchar_t* buffer, std::size_t count, const wchar_t* format, ...);
int vswprintf_s(wchar_t* buffer, std::size_t count, const wchar_t* format, va_list args);

} // namespace ZeCRT

/// Copies `src` and its terminator to `dest`, an array of `cchDest` elements. Text that doesn't fit is a fatal
/// assertion.
inline void wcscpy_s(wchar_t* dest, std::size_t cchDest, const wchar_t* src)
{
    const std::size_t cchSrc = std::wcslen(src);
    if (!(cchSrc < cchDest))
        ZeCRT::assertionFailed("cchSrc < cchDest", "shared/ZeKernel/inc/ZeSafeCRT", __LINE__, "wcscpy_s");
    std::wcsncpy(dest, src, cchSrc + 1);
}
