/// \file
/// The end of a finished run: its last progress report and the file with the total.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Reports that the run has reached its end, then writes `total_node_count.txt`: the number in decimal and a line
/// feed. A file that cannot be written goes unnoticed.
///
/// @param totalKeptNodes kept lines of all files, headers not counted.
void writeNodeCount(const std::string& outputDirectory, std::int32_t totalKeptNodes);

} // namespace vadelclip
