// bench_kernel: how long conversions take, and how much memory they ask for.
//
// `bench_kernel --instructions`, under `valgrind --tool=callgrind`, writes a profile for each conversion instead, which
// tells the instructions of kInputs conversions.

#include "Measure.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <valgrind/callgrind.h>

std::vector<Measured>& measured()
{
    static std::vector<Measured> all;
    return all;
}

namespace {

void measureTime(benchmark::State& state, const Measured& row)
{
    std::size_t requests = 0;
    while (state.KeepRunningBatch(kInputs)) {
        const std::size_t before = heapRequests();
        row.convertAll();
        requests += heapRequests() - before;
    }
    state.counters["heap"] = static_cast<double>(requests) / static_cast<double>(state.iterations());
}

void countInstructions()
{
    for (const Measured& row : measured()) {
        row.convertAll(); // so that what is made once is there
        CALLGRIND_ZERO_STATS;
        row.convertAll();
        CALLGRIND_DUMP_STATS_AT(row.name.c_str());
    }
}

} // namespace

int main(int argc, char** argv)
{
    setenv("LC_ALL", "en_US.UTF-8", 1); // whose separators the format object takes
    try {
        measureWriting();
        measureReading();
        measurePrinting();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_kernel: %s\n", error.what());
        return 1;
    }
    if (argc > 1 && std::strcmp(argv[1], "--instructions") == 0) {
        countInstructions();
        return 0;
    }
    for (const Measured& row : measured())
        benchmark::RegisterBenchmark(row.name.c_str(), [&row](benchmark::State& state) { measureTime(state, row); });
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
