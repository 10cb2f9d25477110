/// \file
/// The figures of the progress, and how they look in one line of a given width.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vadelwatch {

struct ProgressFigures {
    double percent = 0.0;
    std::optional<double> linesPerSecond; ///< Unknown until the lines are counted and some are done.
    double elapsedSeconds = 0.0;
    std::optional<double> remainingSeconds;
};

/// Computes the figures from the tool's progress reports.
///
/// The speed is measured from the end of the first reports that were read together: in a fast run many reports arrive
/// at once, and all of these have the same time.
class ProgressMeasure {
public:
    /// Takes a progress report of the tool.
    void report(double percent) { reported = percent; }

    /// Marks the end of the reports that were read together.
    ///
    /// @param seconds since the start of the tool.
    void endOfReports(double seconds);

    /// Returns the figures. The speed and the time left are unknown until there is enough to measure.
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

enum class BarLetters {
    plain, ///< "=" and "-", for every terminal.
    drawn  ///< Unicode lines, for terminals in UTF-8.
};

struct BarStyle {
    BarLetters letters = BarLetters::plain;
    bool colour = false;
};

/// Returns the bar with its figures, never wider than `columns`. In a narrow window words are left out first, then the
/// rate, the times and at last the bar.
///
/// @param columns 0 or more.
std::string progressBarLine(const ProgressFigures& figures, int columns, const BarStyle& style);

/// Returns the line that is shown without a terminal.
std::string plainProgressLine(const ProgressFigures& figures);

/// Returns "1:05", or "1:01:05" from an hour on. Seconds are rounded down.
std::string clockText(double seconds);

} // namespace vadelwatch
