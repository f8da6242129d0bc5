#pragma once

/// What is measured: conversions of the same kInputs inputs, each by several converters, in one run.
///
/// A name is "write/smpte-drop/kernel": kind of conversion, format, converter. A converter is first tried on every
/// input and compared with what is expected, so that nothing is measured that gives another result.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

/// Many enough that no processor learns the order of their digits.
constexpr std::size_t kInputs = 1024;
template <typename T> using Inputs = std::array<T, kInputs>;

struct Measured {
    std::string name;
    std::function<void()> convertAll; ///< each input once
};

std::vector<Measured>& measured();

/// Requests for memory so far, by `new` or by the C library.
std::size_t heapRequests();

/// `convert(i)` converts input number i and returns what it made: a view of text, or a number.
template <typename Expected, typename Convert>
void measure(const std::string& name, const Inputs<Expected>& expected, Convert convert)
{
    for (std::size_t i = 0; i < kInputs; ++i)
        if (convert(i) != expected[i]) throw std::runtime_error(name + ": wrong result of input " + std::to_string(i));
    measured().push_back({name, [convert]() mutable {
                              for (std::size_t i = 0; i < kInputs; ++i) {
                                  auto result = convert(i);
                                  benchmark::DoNotOptimize(result);
                                  benchmark::ClobberMemory();
                              }
                          }});
}

// Each adds the conversions of one kind.
void measureWriting();
void measureReading();
void measurePrinting();
