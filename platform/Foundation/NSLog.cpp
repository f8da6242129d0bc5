#include "Foundation/NSLog.h"

#include "Foundation/NSClassicLocale.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <unistd.h>

namespace {

class UseClassicLocale {
public:
    UseClassicLocale() : mPrevious(uselocale(NSClassicLocale())) {}
    ~UseClassicLocale() { uselocale(mPrevious); }
    UseClassicLocale(const UseClassicLocale&) = delete;
    UseClassicLocale& operator=(const UseClassicLocale&) = delete;

private:
    locale_t mPrevious;
};

struct Sink {
    std::mutex mutex;
    std::function<void(std::string_view)> function;
};

// Never destroyed: objects that die at the program's end may still log.
Sink& TheSink()
{
    static Sink& sink = *new Sink;
    return sink;
}

} // namespace

locale_t NSClassicLocale()
{
    static const locale_t locale = [] {
        const locale_t unicode = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
        return unicode ? unicode : newlocale(LC_ALL_MASK, "C", nullptr);
    }();
    return locale;
}

std::string NSFormatClassic(const char* format, std::va_list arguments)
{
    const UseClassicLocale classic;
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}

void NSLog(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = NSFormatClassic(format, arguments);
    va_end(arguments);
    std::replace(text.begin(), text.end(), '\n', ' ');

    std::function<void(std::string_view)> sink;
    {
        const std::lock_guard lock(TheSink().mutex);
        sink = TheSink().function;
    }
    if (sink) {
        sink(text);
        return;
    }
    const std::string line =
        std::string(program_invocation_short_name) + "[" + std::to_string(getpid()) + "]: " + text + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

void NSLogSetSink(std::function<void(std::string_view)> sink)
{
    const std::lock_guard lock(TheSink().mutex);
    TheSink().function = std::move(sink);
}
