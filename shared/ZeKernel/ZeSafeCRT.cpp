#include "ZeSafeCRT.h"

#include <array>
#include <clocale>
#include <memory_resource>
#include <string>
#include <string_view>

namespace {

constexpr rlim_t kOpenFiles = 7168;

/// Length of the text that starts with '%' and ends before its length modifier: "%-*2$.3" of "%-*2$.3lc".
std::size_t PrefixLength(std::wstring_view conversion)
{
    const std::size_t end = conversion.find_first_not_of(L"-+ #'I*.$0123456789", 1);
    return end == std::wstring_view::npos ? conversion.size() : end;
}

/// Appends `format` to `out` with every plain %c written as %lc: the C library takes %c for a byte and fails beyond
/// ASCII.
void AppendWithWideCharacters(std::pmr::wstring& out, std::wstring_view format)
{
    while (!format.empty()) {
        std::size_t length = std::min(format.find(L'%'), format.size());
        out += format.substr(0, length);
        format.remove_prefix(length);
        if (format.empty()) return;
        length = PrefixLength(format);
        out += format.substr(0, length);
        if (format.substr(length, 1) == L"c") out += L'l';
        out += format.substr(length, 1);
        format.remove_prefix(std::min(length + 1, format.size()));
    }
}

} // namespace

void ZeCRT::setCharacterLocale()
{
    if (isCharacterLocaleUTF8()) return;
    if (!std::setlocale(LC_CTYPE, "UTF-8")) std::setlocale(LC_CTYPE, "C.UTF-8");
}

void ZeCRT::applyStartUpSettings(rlimit& limit)
{
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = kOpenFiles;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    setCharacterLocale();
}

int ZeCRT::vswprintf_s(wchar_t* buffer, std::size_t count, const wchar_t* format, va_list args)
{
    setCharacterLocale();
    std::array<std::byte, 4096> stack; // formats are short; a longer one goes on in the heap
    std::pmr::monotonic_buffer_resource pool(stack.data(), stack.size());
    std::pmr::wstring wideFormat(&pool);
    wideFormat.reserve(256);
    AppendWithWideCharacters(wideFormat, format);

    const int written = std::vswprintf(buffer, count, wideFormat.c_str(), args);
    // The C library leaves text that it cut without an end; it wrote count - 1 elements then.
    if (written < 0 && count > 0) buffer[count - 1] = 0;
    return written;
}

int ZeCRT::swprintf_s(wchar_t* buffer, std::size_t count, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int written = vswprintf_s(buffer, count, format, args);
    va_end(args);
    return written;
}
