/// Measures one call of OnProgress, without and with a controlling process.

#include <ProcessMessage.h>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace vadelclip {

namespace {

constexpr int stepCount = std::numeric_limits<int>::max();

void callOnProgress(benchmark::State& state) {
    ProgressMessage progress(0.0, 100.0, stepCount);
    int step = 0;
    for (auto _ : state) {
        progress.OnProgress(step, false);
        step = step == stepCount ? 0 : step + 1;
    }
}

void withoutPipeMode(benchmark::State& state) {
    callOnProgress(state);
}

/// The sender exists until the process ends, so this benchmark is the last one.
void withPipeMode(benchmark::State& state) {
    const int sink = open("/dev/null", O_WRONLY);
    if (sink >= 0 && dup2(sink, 3) == 3) {
        MessageSender::Instance(true);
    }
    callOnProgress(state);
}

BENCHMARK(withoutPipeMode);
BENCHMARK(withPipeMode);

} // namespace

} // namespace vadelclip
