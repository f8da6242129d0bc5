#include "ZeString.h"

#include "ZeSafeCRT.h"

#include <charconv>
#include <cstdio>
#include <functional>
#include <optional>

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

constexpr std::size_t kLongestConversion = 20; // elements, of the smallest 64-bit number

/// Writes a number's digits, filled with zeros up to `width`. @return behind the last one
template <typename Number> wchar_t* WriteDigits(wchar_t* to, Number number, int base, std::ptrdiff_t width)
{
    char digits[kLongestConversion];
    const char* const end = std::to_chars(digits, std::end(digits), number, base).ptr;
    for (std::ptrdiff_t missing = width - (end - digits); missing > 0; --missing) *to++ = L'0';
    return std::copy(static_cast<const char*>(digits), end, to);
}

/// Prints the formats that the kernel itself uses: text, %c, %d, %ld, and %u and %x with at most one digit of a width
/// that zeros fill. @return the length; nothing where the format or the text's length needs the C library
std::optional<std::size_t> PrintPlain(wchar_t (&buffer)[kBuffer], const wchar_t* format, va_list args)
{
    wchar_t* to = buffer;
    wchar_t* const last = buffer + (kCount - 1) - kLongestConversion;
    while (const wchar_t element = *format++) {
        if (to > last) return std::nullopt;
        if (element != L'%') {
            *to++ = element;
            continue;
        }
        int width = 0;
        if (format[0] == L'0' && format[1] >= L'1' && format[1] <= L'9') {
            width = format[1] - L'0';
            format += 2;
        }
        const wchar_t conversion = *format++;
        if (conversion == L'u' || conversion == L'x') {
            to = WriteDigits(to, va_arg(args, unsigned), conversion == L'u' ? 10 : 16, width);
        } else if (conversion == L'd' && width == 0) {
            to = WriteDigits(to, va_arg(args, int), 10, 0);
        } else if (conversion == L'l' && *format == L'd' && width == 0) {
            ++format;
            to = WriteDigits(to, va_arg(args, long), 10, 0);
        } else if (conversion == L'c' && width == 0) {
            *to = static_cast<wchar_t>(va_arg(args, int));
            if (!*to++) return std::nullopt; // a NUL ends the text
        } else {
            return std::nullopt;
        }
    }
    return static_cast<std::size_t>(to - buffer);
}

} // namespace

void zeassign(std::basic_string<wchar_t>& target, const wchar_t* source) { Assign(target, source); }

void zeassign(std::basic_string<char>& target, const char* source) { Assign(target, source); }

void ZeVSprintf(ZeString& out, const wchar_t* format, va_list args)
{
    wchar_t buffer[kBuffer];
    va_list plainArgs;
    va_copy(plainArgs, args);
    const auto length = PrintPlain(buffer, format, plainArgs);
    va_end(plainArgs);
    if (length) {
        ZeCRT::setCharacterLocale();
        out.assign(buffer, *length);
        return;
    }
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
