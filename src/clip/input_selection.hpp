/// \file
/// The first pass over the input directory: which files are node files, and how many lines each has.
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

/// The chosen files and their line counts; the two lists are parallel.
struct InputSelection {
    std::vector<std::string> inputFiles;  ///< Full paths, in the order in which the directory delivers them.
    std::vector<std::int32_t> lineCounts; ///< Line feeds less one: the data lines that end in a line feed, or -1.
};

/// Walks a directory, one level deep, and chooses every entry that is no directory, ends in ".txt", ".xyz" or ".csv"
/// and begins with a header line. Anything else is skipped in silence.
///
/// @throws boost::filesystem::filesystem_error if the walk or a status query fails.
InputSelection selectInputFiles(const std::string& inputDirectory);

/// Adds up line counts with 32-bit wrap-around.
std::int32_t sumLineCounts(const std::vector<std::int32_t>& lineCounts);

} // namespace vadelclip
