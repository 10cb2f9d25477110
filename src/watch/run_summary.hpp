/// \file
/// The summary of a run, for people and as JSON.
#pragma once

#include "watch/check/input_report.hpp"
#include "watch/check/output_check.hpp"
#include "watch/watch_options.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

struct RunSummary {
    std::string closingText; ///< Text of the tool's finish or failed message; may be empty.
    int exitStatus = 0;      ///< Of Vadelwatch.
    bool finished = false;   ///< The tool ended with status 0.
    std::uint64_t filesRead = 0;
    std::uint64_t filesWritten = 0;
    std::optional<std::uint64_t> nodesRead; ///< Unknown if not every node file could be counted.
    std::uint64_t nodesKept = 0;            ///< Lines in the output files.
    std::optional<std::int64_t> nodeCount;  ///< The number in `total_node_count.txt`.
    bool addsUp = false;
    double seconds = 0.0;
    std::string outputDirectory;
    std::vector<std::string> errors; ///< Texts of the tool's errors, in order.
    std::string startTime;           ///< RFC 3339, in UTC.
    std::string failure;             ///< Why the run failed; empty for a good one.
    int signal = 0;                  ///< The signal that ended the tool, or 0.
    int interruptedBy = 0;           ///< The last signal that asked for the end, or 0.
    std::vector<Suspect> suspects;   ///< What may explain that the output does not add up.
    std::string whyNoMap;            ///< Empty if the map was drawn.
    InputReport input;
    WatchOptions options;
};

/// Returns lines for people, each with its line feed. Only for a finished run.
///
/// @param columns width of the window. If the table is wider, each value is below its label, and sentences are wrapped
///                between words. A path is never wrapped.
/// @param colour  the verdict of the check is green or red.
std::string summaryText(const RunSummary& summary, std::size_t columns, bool colour = false);

/// Returns one JSON object and a line feed. Unknown values are null, and so are most values of a run that did not
/// finish.
std::string summaryJson(const RunSummary& summary);

} // namespace vadelwatch
