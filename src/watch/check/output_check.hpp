/// \file
/// The check that the tool by design does not make: whether the lines of its output add up to the count it wrote.
#pragma once

#include "watch/check/node_files.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace vadelwatch {

/// The file in the output directory that has the number of kept lines.
inline constexpr const char* nodeCountName = "total_node_count.txt";

enum class OutputCondition {
    whole,
    empty,       ///< Not even a header.
    cut,         ///< The last line has no line feed, which the tool never leaves out.
    withoutNode, ///< A header alone; the tool removes such files.
    unreadable,
    notRegular
};

struct OutputFile {
    std::string name;
    std::uint64_t nodeLines = 0; ///< Whole lines without the header.
    OutputCondition condition = OutputCondition::whole;
};

struct OutputCheck {
    std::error_code directoryError;        ///< Why the directory cannot be read, if so; then files may be missing here.
    std::vector<OutputFile> files;         ///< By name; `total_node_count.txt` is not among them.
    std::vector<std::string> directories;  ///< Names of the directories in it.
    std::uint64_t nodeLines = 0;           ///< Of all files.
    bool hasNodeCountFile = false;         ///< `total_node_count.txt` exists.
    std::optional<std::int64_t> nodeCount; ///< What it says, if it says anything.
    bool addsUp = false;

    /// How much the count says beyond the lines that are there. Negative if there are more lines. Both sides are seen as
    /// the 32-bit numbers that the tool counts with.
    std::int64_t missingNodes() const;
};

/// Reads every file of a finished output directory once. Directories in it are not looked into.
OutputCheck checkOutput(const std::string& outputDirectory);

/// What is known about a difference besides the output itself.
struct RunEvidence {
    const NodeFiles& nodeFiles;  ///< As they were when the run began.
    std::size_t rejectedHeaders; ///< Errors of a finished run; that is all a finished run reports.
    std::string outputDirectory;
};

/// Says which and how much, line by line: first the difference, then every file that may account for it.
///
/// @return nothing if everything adds up.
std::vector<std::string> describeDifference(const OutputCheck& check, const RunEvidence& evidence);

} // namespace vadelwatch
