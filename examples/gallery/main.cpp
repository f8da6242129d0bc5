// gallery: every drawing operation of ZeUI, labelled, in one picture.

#include "Foundation/NSAutoreleasePool.h"
#include "Sections.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kUsageWrong = 2 };

struct Options {
    std::string file; ///< empty where the command line is wrong
    double scale = 1;
};

constexpr double kLargestScale = 4;

Options parseOptions(std::span<char*> arguments)
{
    Options options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--scale" && i + 1 < arguments.size()) {
            const std::string_view text = arguments[++i];
            const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), options.scale);
            const bool whole = error == std::errc{} && end == text.data() + text.size();
            if (!whole || !(options.scale >= 1 && options.scale <= kLargestScale)) return {};
        } else if (!options.file.empty() || argument.empty() || argument.front() == '-') {
            return {};
        } else {
            options.file = argument;
        }
    }
    return options;
}

int run(const Options& options)
{
    const NSAutoreleasePool pool;
    Samples samples;
    const Section sections[] = {rectangles(), lines(), paths(), images(), text(), glyphs()};
    const auto picture = drawSheet(sections, samples, options.scale);
    if (CGImageWritePNGFile(picture, options.file)) return kDone;
    std::fprintf(stderr, "gallery: %s: can't be written\n", options.file.c_str());
    return kFailed;
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = parseOptions({argv, static_cast<std::size_t>(argc)});
    if (options.file.empty()) {
        std::fputs("Usage: gallery FILE.png [--scale S]\nS is pixels a unit, from 1 to 4; 1 without it.\n", stderr);
        return kUsageWrong;
    }
    try {
        return run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gallery: %s\n", error.what());
        return kFailed;
    }
}
