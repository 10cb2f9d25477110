/// \file
/// Messages that tests send through the messaging library, and the lines that our own layer writes for them.
#pragma once

#include <ProcessMessage.h>

#include <cstdlib>
#include <string>
#include <unistd.h>

namespace vadelclip {

inline void sendError(const std::string& text) {
    const ErrorMessage message(2, text);
}

inline std::string errorLineOf(const std::string& text) {
    return "{\"type\":\"error\",\"level\":2,\"text\":\"" + text + "\"}\n";
}

/// Opens a progress range and reports its first `calls` steps.
inline void walkRange(double start, double end, int stepCount, int calls) {
    ProgressMessage progress(start, end, stepCount);
    for (int step = 0; step < calls; ++step) {
        progress.OnProgress(step, false);
    }
}

/// Sends the range that ends a run.
inline void walkClosingRange() {
    ProgressMessage progress(1.0, 100.0, 100);
    progress.OnProgress(100, false);
}

inline std::string percentLine(const std::string& percent) {
    return "{\"type\":\"progress\",\"percent\":" + percent + "}\n";
}

/// Writes a line of the test between the lines of the layer.
inline void mark(const std::string& text) {
    const std::string line = "-- " + text + "\n";
    if (write(3, line.data(), line.size()) < 0) {
        std::abort();
    }
}

} // namespace vadelclip
