/// \file
/// What tests send through the messaging library, and the lines of our own layer that this comes out as.
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

/// Opens a progress range and reports the first `calls` steps of it.
inline void walkRange(double start, double end, int stepCount, int calls) {
    ProgressMessage progress(start, end, stepCount);
    for (int step = 0; step < calls; ++step) {
        progress.OnProgress(step, false);
    }
}

/// The range that ends a run.
inline void walkClosingRange() {
    ProgressMessage progress(1.0, 100.0, 100);
    progress.OnProgress(100, false);
}

inline std::string percentLine(const std::string& percent) {
    return "{\"type\":\"progress\",\"percent\":" + percent + "}\n";
}

/// Writes a line of the test's own between those of the layer.
inline void mark(const std::string& text) {
    const std::string line = "-- " + text + "\n";
    if (write(3, line.data(), line.size()) < 0) {
        std::abort();
    }
}

} // namespace vadelclip
