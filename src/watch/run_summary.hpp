/// \file
/// The summary of a run, and its text for people.
#pragma once

#include "watch/check/input_report.hpp"
#include "watch/check/output_difference.hpp"
#include "watch/run/run_watcher.hpp"
#include "watch/watch_options.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

/// Everything that the summary of a run shows.
struct RunSummary {
    RunRecord record;
    bool finished = false;                  ///< The tool ended with status 0.
    std::optional<OutputCheck> check;       ///< Of a finished run, once its output is checked.
    int exitStatus = 0;                     ///< Of Vadelwatch.
    std::optional<std::uint64_t> nodesRead; ///< Unknown if not every node file could be counted.
    std::string outputDirectory;
    std::string startTime;         ///< RFC 3339, in UTC.
    std::string failure;           ///< Why the run failed; empty for a good one.
    std::vector<Suspect> suspects; ///< What may explain that the output does not add up.
    std::string whyNoMap;          ///< Empty if the map was drawn.
    InputReport input;
    WatchOptions options;

    /// Returns nothing if the number of nodes read is 0 or one of the numbers is unknown. Only for a checked run.
    std::optional<double> percentKept() const;
};

/// Returns lines for people, each with its line feed. Only for a run whose output is checked.
///
/// @param columns width of the window. If the table is wider, each value is below its label, and sentences are wrapped
///                between words. A path is never wrapped.
/// @param colour  the verdict of the check is green or red.
std::string summaryText(const RunSummary& summary, std::size_t columns, bool colour = false);

} // namespace vadelwatch
