/// Measures reading one number of a node line.

#include "text/number_text.hpp"

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

namespace vadelclip {

namespace {

/// Ordinary decimals, one that is too long for a single division, and one with an exponent.
const char* const texts[] = {"382250.29;", "6354470.919300254;", "-61.85\t", "0.12345678901234567890;", "1.5e3;"};

void fast(benchmark::State& state) {
    const std::string text = texts[state.range(0)];
    for (auto _ : state) {
        benchmark::DoNotOptimize(readNumber(text));
    }
    state.SetLabel(text);
}

void throughStream(benchmark::State& state) {
    const std::string text = texts[state.range(0)];
    for (auto _ : state) {
        std::istringstream stream(text);
        double value = 0.0;
        stream >> value;
        benchmark::DoNotOptimize(value);
    }
    state.SetLabel(text);
}

BENCHMARK(fast)->DenseRange(0, 4);
BENCHMARK(throughStream)->DenseRange(0, 4);

} // namespace

} // namespace vadelclip
