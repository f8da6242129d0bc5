#include "ZeString.h"

#include "ZeSafeCRT.h"

#include <cstdio>
#include <functional>

namespace {

constexpr std::size_t kBuffer = 1024; // elements
constexpr std::size_t kCount = 1023;  // what wide printing may use of them, terminator included

template <typename Ch> void Assign(std::basic_string<Ch>& target, const Ch* source)
{
    constexpr std::less_equal<const Ch*> notAfter;
    const Ch* const begin = target.data();
    if (!source)
        target.clear();
    else if (notAfter(begin, source) && notAfter(source, begin + target.size()))
        target = std::basic_string<Ch>(source, begin + target.size());
    else
        target = source;
}

} // namespace

void zeassign(std::basic_string<wchar_t>& target, const wchar_t* source) { Assign(target, source); }

void zeassign(std::basic_string<char>& target, const char* source) { Assign(target, source); }

void ZeVSprintf(ZeString& out, const wchar_t* format, va_list args)
{
    wchar_t buffer[kBuffer];
    buffer[0] = 0;
    buffer[kCount - 2] = 0;
    const bool failed = ZeCRT::vswprintf_s(buffer, kCount, format, args) < 0;
    // Text that was cut fills the buffer; a format in error leaves what it had printed, which nobody wants.
    if (failed && buffer[kCount - 2] == 0) buffer[0] = 0;
    zeassign(out, buffer);
}

void ZeSprintf(ZeString& out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    ZeVSprintf(out, format, args);
    va_end(args);
}

void ZeVSprintfA(_ZeString<char>& out, const char* format, va_list args)
{
    char buffer[kBuffer];
    buffer[0] = 0;
    std::vsnprintf(buffer, sizeof buffer, format, args);
    zeassign(out, buffer);
}

void ZeSprintfA(_ZeString<char>& out, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    ZeVSprintfA(out, format, args);
    va_end(args);
}
