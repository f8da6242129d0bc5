// Formatted printing: the formats that the kernel prints with, beside the C library.

#include "Samples.h"

#include <cwchar>
#include <memory>

namespace {

constexpr std::size_t kRoom = 64;

int printByLibrary(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int count = std::vswprintf(out, kRoom, format, args);
    va_end(args);
    return count;
}

/// `argumentsOf(i, print)` calls `print` with the format's arguments.
template <typename ArgumentsOf> void measureFormat(const char* name, const wchar_t* format, ArgumentsOf argumentsOf)
{
    const auto out = std::make_shared<ZeString>();
    const auto printZe = [out, format](auto... args) { ZeSprintf(*out, format, args...); };
    Inputs<ZeString> texts;
    for (std::size_t i = 0; i < kInputs; ++i) {
        argumentsOf(i, printZe);
        texts[i] = *out;
    }
    measure(std::string("print/") + name + "/ZeSprintf", texts, [=](std::size_t i) {
        argumentsOf(i, printZe);
        return std::wstring_view(*out);
    });
    const auto buffer = std::make_shared<std::array<wchar_t, kRoom>>();
    measure(std::string("print/") + name + "/vswprintf", texts, [=](std::size_t i) {
        int count = 0;
        argumentsOf(i, [&](auto... args) { count = printByLibrary(buffer->data(), format, args...); });
        return std::wstring_view(buffer->data(), static_cast<std::size_t>(count));
    });
}

} // namespace

void measurePrinting()
{
    static const Inputs<ZeString> labels = textsOf(QVPOSFMT_SMPTE_NONDROP_30);
    static Inputs<Numbers> numbers;
    for (std::size_t i = 0; i < kInputs; ++i) numbers[i] = numbersOf(labels[i]);

    measureFormat("timecode", L"%02u:%02u:%02u:%02u", [](std::size_t i, auto print) {
        const auto& n = numbers[i].at;
        print(n[0], n[1], n[2], n[3]);
    });
    measureFormat("time", L"%02u:%02u:%02u%c%03u", [](std::size_t i, auto print) {
        const auto& n = numbers[i].at;
        print(n[0], n[1], n[2], int{L'.'}, n[3] * 33);
    });
    measureFormat("measures", L"%u:%u%c%u", [](std::size_t i, auto print) {
        const auto& n = numbers[i].at;
        print(n[0] * 60 + n[1], n[2], int{L'.'}, n[3] * 32);
    });
    measureFormat("zoom", L"%d:%ld",
                  [](std::size_t i, auto print) { print(1, static_cast<long>(kPositions[i] % 4096)); });
    measureFormat("guid", L"%08x-%04x-%04x-%04x-%02x%02x%02x%02x%02x%02x", [](std::size_t i, auto print) {
        const auto& n = numbers[i].at;
        const auto position = static_cast<unsigned>(kPositions[i]);
        print(position, position & 0xFFFF, position >> 16, 0x8000 + n[0], n[0], n[1], n[2], n[3], n[1] + n[2], 255u);
    });
    measureFormat("constant", L"!", [](std::size_t, auto print) { print(); });
}
