/// \file
/// The first pass over the input directory: finds the node files and counts their lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vadelclip {

/// Returns true if a path ends in ".txt", ".xyz" or ".csv", byte for byte: a suffix in capitals does not match, a file
/// named only ".txt" does.
bool hasNodeFileSuffix(std::string_view path);

/// Opens a file and returns true if its first line is a header (node_file_header.hpp). A file that cannot be read has
/// an empty first line, which is not a header.
bool hasNodeFileHeader(const std::string& path);

/// The selected files and their line counts, in two parallel lists.
struct InputSelection {
    std::vector<std::string> inputFiles;  ///< Full paths, in the order of the directory iterator.
    std::vector<std::int32_t> lineCounts; ///< Line feeds minus one: the data lines that end in a line feed, or -1.
};

/// Walks through a directory, one level deep, and selects every entry that is not a directory, has the suffix of a node
/// file and begins with a header line. Other entries are skipped silently.
///
/// @throws boost::filesystem::filesystem_error if the walk or a status query fails.
InputSelection selectInputFiles(const std::string& inputDirectory);

/// Adds line counts with 32-bit wrap-around.
std::int32_t sumLineCounts(const std::vector<std::int32_t>& lineCounts);

} // namespace vadelclip
