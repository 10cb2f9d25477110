/// Measures reading and counting lines of a file in the cache.

#include "text/line_reader.hpp"
#include "text/text_lines.hpp"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace vadelclip {

namespace {

constexpr int lineCount = 200000;

const std::string& nodeFile() {
    static const std::string path = [] {
        std::string name = "/tmp/line_reader_bench_XXXXXX";
        close(mkstemp(name.data()));
        std::ofstream file(name);
        for (int i = 0; i < lineCount; ++i) {
            file << "382250.29;6354610.91;48." << 1000 + i % 9000 << '\n';
        }
        return name;
    }();
    return path;
}

void linesInPlace(benchmark::State& state) {
    for (auto _ : state) {
        LineReader reader(nodeFile());
        for (int i = 0; i < lineCount; ++i) {
            benchmark::DoNotOptimize(reader.nextLine());
        }
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
}

void linesThroughStream(benchmark::State& state) {
    for (auto _ : state) {
        std::ifstream input(nodeFile());
        std::string line;
        for (int i = 0; i < lineCount; ++i) {
            readTextLine(input, line);
            benchmark::DoNotOptimize(line);
        }
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
}

void countedLines(benchmark::State& state) {
    for (auto _ : state) {
        std::ifstream input(nodeFile());
        benchmark::DoNotOptimize(countLineFeeds(input));
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
}

BENCHMARK(linesInPlace)->Unit(benchmark::kMillisecond);
BENCHMARK(linesThroughStream)->Unit(benchmark::kMillisecond);
BENCHMARK(countedLines)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace vadelclip
