// bench_editor MEASUREMENT NAME=VALUE...: one measurement of one editor, on the display that DISPLAY names.

#include "Measurements.h"

#include <cstdio>
#include <exception>
#include <string_view>

namespace {

constexpr struct {
    std::string_view name;
    void (*measure)(const EditorFacts&);
} kMeasurements[] = {
    {"opening", measureOpening},   {"closing", measureClosing}, {"idling", measureIdling},
    {"changing", measureChanging}, {"wheel", measureWheel},
};

} // namespace

int main(int argc, char** argv)
{
    const std::string_view name = argc > 1 ? argv[1] : "";
    for (const auto& row : kMeasurements) {
        if (row.name != name) continue;
        try {
            row.measure(EditorFacts::read({argv + 2, argv + argc}));
            return 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "bench_editor: %s\n", error.what());
            return 1;
        }
    }
    std::fprintf(stderr, "usage: bench_editor opening|closing|idling|changing|wheel NAME=VALUE...\n");
    return 2;
}
