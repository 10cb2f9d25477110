/// \file
/// Checks that the lines of the output files add up to the count that the tool wrote, and that files can be made in a
/// directory. The tool does not check this, by design.
#pragma once

#include "watch/check/node_files.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/statvfs.h>
#include <system_error>
#include <vector>

namespace vadelwatch {

/// The file in the output directory with the number of kept lines.
inline constexpr const char* nodeCountName = "total_node_count.txt";

enum class OutputCondition {
    whole,
    empty,       ///< Not even a header.
    cut,         ///< The last line has no line feed. The tool always writes it.
    withoutNode, ///< Only a header. The tool removes such files.
    unreadable,
    notRegular
};

struct OutputFile {
    std::string name;
    std::uint64_t nodeLines = 0; ///< Whole lines without the header.
    OutputCondition condition = OutputCondition::whole;
};

/// Returns true if the number of lines in the file is known.
bool isCounted(const OutputFile& file);

struct OutputCheck {
    std::error_code directoryError;        ///< Set if the directory cannot be read; then files may be missing here.
    std::vector<OutputFile> files;         ///< Sorted by name, without `total_node_count.txt`.
    std::vector<std::string> directories;  ///< Names of the directories in it.
    std::uint64_t nodeLines = 0;           ///< Of all files.
    bool hasNodeCountFile = false;         ///< `total_node_count.txt` exists.
    std::optional<std::int64_t> nodeCount; ///< The number in `total_node_count.txt`, if it contains one.
    bool addsUp = false;

    /// Returns `nodeLines`, or nothing if the directory cannot be read.
    std::optional<std::uint64_t> keptNodes() const;

    /// Returns how many lines are missing, negative if there are too many. Compares 32-bit numbers, because the tool
    /// counts with them.
    std::int64_t missingNodes() const;
};

/// Reads every file of a finished output directory once, but not the directories in it.
///
/// @param showPercent is called after each block with the percentage of bytes read.
OutputCheck checkOutput(
    const std::string& outputDirectory, const std::function<void(double percent)>& showPercent = [](double) {});

/// Returns true if no space is left. A file system that does not count its blocks is never full.
bool isOutOfSpace(const struct statvfs& fileSystem);

/// Returns true if no inode is left for a new file. Some file systems do not count inodes and report 0 of 0.
bool isOutOfInodes(const struct statvfs& fileSystem);

/// Returns a sentence for everything that prevents new files in a directory now.
std::vector<std::string> obstaclesIn(const std::string& directory);

} // namespace vadelwatch
