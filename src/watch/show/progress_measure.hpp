/// \file
/// From the tool's reports of progress to the figures that people see.
#pragma once

#include "watch/show/progress_line.hpp"

#include <cstdint>
#include <optional>

namespace vadelwatch {

/// How fast the run is, is measured from where it stood when the first reports had been read. They come in heaps where
/// the run is fast, and all reports of one heap have the same time.
class ProgressMeasure {
public:
    /// The tool has reported so many percent.
    void report(double percent) { reported = percent; }

    /// All reports that were there have been taken.
    /// @param seconds since the start of the tool.
    void endOfReports(double seconds);

    /// Lines per second and the time left are unknown until there is something to measure them by.
    ///
    /// @param seconds   since the start of the tool.
    /// @param nodeLines of the whole run, if they are known.
    ProgressFigures figures(double seconds, std::optional<std::uint64_t> nodeLines) const;

private:
    struct Base {
        double seconds;
        double percent;
    };

    double reported = 0.0;
    std::optional<Base> base;
};

} // namespace vadelwatch
