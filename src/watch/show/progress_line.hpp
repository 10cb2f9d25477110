/// \file
/// The figures of the progress, and how they look in one line of a given width.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace vadelwatch {

struct ProgressFigures {
    std::string phase;             ///< Its translated name.
    std::optional<double> percent; ///< Unknown in a phase without a measure of its progress.
    double elapsedSeconds = 0.0;
    std::optional<double> linesPerSecond; ///< Unknown until the lines are counted and some are done.
    std::optional<double> bytesPerSecond;
    std::optional<double> remainingSeconds;
    double stalledSeconds = 0.0; ///< 0 unless the tool has made no progress for an unusual time.
    std::uint64_t file = 0;      ///< Number of the current file, from 1 on; 0 if there is none.
    std::uint64_t files = 0;     ///< 0 if their number is unknown.
    std::string fileName;        ///< Of the current file; may be empty.
};

/// Computes speed and time left from the tool's progress reports of the last few seconds, because the speed of a run
/// may change.
///
/// The measurement starts at the end of the first reports that were read together: in a fast run many reports arrive at
/// once, and all of these have the same time.
class ProgressMeasure {
public:
    /// Takes a progress report of the tool.
    void report(double percent) { reported = percent; }

    bool hasReports() const { return reported > 0.0; }

    /// Marks the end of the reports that were read together.
    ///
    /// @param seconds since the start of the tool.
    void endOfReports(double seconds);

    /// Adds the percentage, the speed and the time left, as far as there is enough to measure.
    ///
    /// @param seconds   since the start of the tool.
    /// @param nodeLines of the whole run, if they are known.
    /// @param bytes     of the whole run, 0 if they are unknown.
    void addTo(ProgressFigures& figures, double seconds, std::optional<std::uint64_t> nodeLines,
               std::uint64_t bytes) const;

private:
    struct Sample {
        double seconds;
        double percent;
    };

    double reported = 0.0;
    double lastChange = 0.0;    ///< Time of the last report with a new percentage.
    std::deque<Sample> samples; ///< In the order of time. The first one is the start of the measurement.
};

enum class BarLetters {
    plain, ///< "=" and "-", for every terminal.
    drawn  ///< Unicode lines, for terminals in UTF-8.
};

struct BarStyle {
    BarLetters letters = BarLetters::plain;
    bool colour = false;
};

/// Returns the bar with its figures, never wider than `columns`. A narrow window omits the least important figures; the
/// percentage and the phase remain longest.
///
/// @param columns 0 or more.
std::string progressBarLine(const ProgressFigures& figures, int columns, const BarStyle& style);

/// Returns the line that is shown without a terminal: all known figures.
std::string plainProgressLine(const ProgressFigures& figures);

/// Returns "1:05", or "1:01:05" from an hour on. Seconds are rounded down.
std::string clockText(double seconds);

} // namespace vadelwatch
