#include "ZeString.h"

#include "ZeSafeCRT.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
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

constexpr std::size_t kLongestConversion = 20; // elements, of the lowest 64-bit number

/// 1, 10, 100 ... 10^19
constexpr auto kPowersOf10 = [] {
    std::array<unsigned long, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// Number of digits; 0 has one.
template <unsigned Base, std::unsigned_integral Number> unsigned LengthOf(Number number)
{
    const auto bits = static_cast<unsigned>(std::bit_width(number | Number{1}));
    if constexpr (Base == 16) return (bits + 3) / 4;
    const unsigned atLeast = bits * 1233 >> 12; // bits times the logarithm of 2
    return atLeast + (number >= kPowersOf10[atLeast] || atLeast == 0);
}

constexpr wchar_t Digit(unsigned long value) { return static_cast<wchar_t>("0123456789abcdef"[value]); }

/// Writes digits, filled with zeros up to `width`. @return behind the last one
template <unsigned Base, std::unsigned_integral Number>
inline wchar_t* WriteDigits(wchar_t* to, Number number, unsigned width)
{
    if (number < Base * Base && width <= 2) { // most are
        if (width == 2 || number >= Base) *to++ = Digit(number / Base);
        *to++ = Digit(number % Base);
        return to;
    }
    wchar_t* const end = to + std::max(width, LengthOf<Base>(number));
    for (wchar_t* at = end; at != to; number /= Base) *--at = Digit(number % Base);
    return end;
}

template <std::unsigned_integral Magnitude> inline wchar_t* WriteSigned(wchar_t* to, Magnitude number, bool isNegative)
{
    if (isNegative) *to++ = L'-';
    return WriteDigits<10>(to, isNegative ? 0 - number : number, 1);
}

void UseUTF8()
{
    if (!ZeCRT::isCharacterLocaleUTF8()) ZeCRT::setCharacterLocale();
}

/// Prints a format that is nothing but text. @return false, with `out` untouched, for any other, and for long text
bool PrintText(ZeString& out, const wchar_t* format)
{
    std::size_t size = 0;
    while (format[size] != L'%' && format[size] != 0) ++size;
    if (format[size] != 0 || size >= kCount) return false;
    UseUTF8();
    out.assign(format, size);
    return true;
}

/// Prints the formats that the kernel itself uses: text, %c, %d, %ld, and %u and %x with at most one digit of a width
/// that zeros fill. @return false, with `out` untouched, where the format or the text's length needs the C library
bool PrintPlain(ZeString& out, const wchar_t* format, va_list args)
{
    wchar_t buffer[kBuffer];
    wchar_t* to = buffer;
    wchar_t* const last = buffer + (kCount - 1) - kLongestConversion;
    while (const wchar_t element = *format++) {
        if (to > last) return false;
        if (element != L'%') {
            *to++ = element;
            continue;
        }
        unsigned width = 0;
        if (format[0] == L'0' && format[1] >= L'1' && format[1] <= L'9') {
            width = static_cast<unsigned>(format[1] - L'0');
            format += 2;
        }
        const wchar_t conversion = *format++;
        if (conversion == L'u') {
            to = WriteDigits<10>(to, va_arg(args, unsigned), width);
        } else if (conversion == L'x') {
            to = WriteDigits<16>(to, va_arg(args, unsigned), width);
        } else if (width == 0 && conversion == L'd') {
            const int number = va_arg(args, int);
            to = WriteSigned(to, static_cast<unsigned>(number), number < 0);
        } else if (width == 0 && conversion == L'l' && *format == L'd') {
            ++format;
            const long number = va_arg(args, long);
            to = WriteSigned(to, static_cast<unsigned long>(number), number < 0);
        } else if (width == 0 && conversion == L'c') {
            *to = static_cast<wchar_t>(va_arg(args, int));
            if (!*to++) return false; // a NUL ends the text
        } else {
            return false;
        }
    }
    UseUTF8();
    const auto size = static_cast<std::size_t>(to - buffer);
    if (out.size() != size) out.resize(size); // by far faster than assigning, which looks for overlaps
    std::copy(buffer, to, out.data());
    return true;
}

void PrintByLibrary(ZeString& out, const wchar_t* format, va_list args)
{
    wchar_t buffer[kBuffer];
    buffer[0] = 0;
    buffer[kCount - 2] = 0;
    const bool failed = ZeCRT::vswprintf_s(buffer, kCount, format, args) < 0;
    // Text that was cut fills the buffer; a format in error leaves what it had printed, which nobody wants.
    if (failed && buffer[kCount - 2] == 0) buffer[0] = 0;
    zeassign(out, buffer);
}

} // namespace

void zeassign(std::basic_string<wchar_t>& target, const wchar_t* source) { Assign(target, source); }

void zeassign(std::basic_string<char>& target, const char* source) { Assign(target, source); }

void ZeVSprintf(ZeString& out, const wchar_t* format, va_list args)
{
    va_list plainArgs;
    va_copy(plainArgs, args);
    const bool done = PrintPlain(out, format, plainArgs);
    va_end(plainArgs);
    if (!done) PrintByLibrary(out, format, args);
}

void ZeSprintf(ZeString& out, const wchar_t* format, ...)
{
    if (PrintText(out, format)) return;
    // A list each, since copying one that was just begun stalls the processor for longer than a number takes.
    va_list plainArgs, args;
    va_start(plainArgs, format);
    const bool done = PrintPlain(out, format, plainArgs);
    va_end(plainArgs);
    if (done) return;
    va_start(args, format);
    PrintByLibrary(out, format, args);
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
