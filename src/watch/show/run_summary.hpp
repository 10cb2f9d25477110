/// \file
/// What a person asks when a run is over, and the same for a script.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vadelwatch {

struct RunSummary {
    std::string closingText; ///< The tool's own last words; empty if there were none.
    int exitStatus = 0;      ///< Vadelwatch's own.
    bool finished = false;   ///< The tool ended with status 0.
    std::uint64_t filesRead = 0;
    std::uint64_t filesWritten = 0;
    std::optional<std::uint64_t> nodesRead; ///< Unknown if not every node file could be counted.
    std::uint64_t nodesKept = 0;            ///< Lines that stand in the output files.
    std::optional<std::int64_t> nodeCount;  ///< What `total_node_count.txt` says.
    bool addsUp = false;
    double seconds = 0.0;
    std::string outputDirectory;
    std::vector<std::string> errors; ///< Texts of the tool's errors, in their order.
};

/// Lines for a person, each with its line feed. Only for a finished run.
///
/// @param columns width of the window. Where the table is wider, each value stands below its label, and sentences are
///                broken between words; a path is never broken.
std::string summaryText(const RunSummary& summary, std::size_t columns);

/// One JSON object with a line feed behind it; what is unknown is null, and so is all that only a finished run has.
std::string summaryJson(const RunSummary& summary);

} // namespace vadelwatch
