// zepos: positions from one format to another.

#include "zepos/Converter.h"
#include "zepos/Lines.h"
#include "zepos/Options.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

enum ExitStatus { kDone = 0, kInputWrong = 1, kUsageWrong = 2 };

int convert(const Options& options)
{
    Converter converter(options);
    Lines lines(converter, STDOUT_FILENO);
    const bool allRead =
        options.operands.empty() ? lines.convertLines(STDIN_FILENO) : lines.convertOperands(options.operands);
    return allRead ? kDone : kInputWrong;
}

int print(const std::string& text)
{
    return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? kInputWrong : kDone;
}

int run(const Options& options)
{
    // The number formatter asks the environment for the user's locale.
    if (options.locale) setenv("LC_ALL", options.locale->c_str(), 1);
    switch (options.mode) {
    case Options::Mode::convert:
        return convert(options);
    case Options::Mode::ticks:
        return print(Converter(options).ticksFor(options.span));
    case Options::Mode::listFormats:
        return print(formatList(options));
    case Options::Mode::help:
        return print(helpText());
    case Options::Mode::version:
        return print("zepos " TONARO_VERSION "\n");
    }
    return kUsageWrong;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(parseOptions(argc, argv));
    } catch (const UsageError& error) {
        if (!error.message.empty()) std::fprintf(stderr, "zepos: %s\n", error.message.c_str());
        std::fputs("Try 'zepos --help'.\n", stderr);
        return kUsageWrong;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zepos: %s\n", error.what());
    }
    return kInputWrong;
}
