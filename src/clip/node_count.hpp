/// \file
/// The last step of a finished run: the last progress report and the file with the total.
#pragma once

#include <cstdint>
#include <string>

namespace vadelclip {

/// Reports the end of the run, then writes `total_node_count.txt`: the number in decimal and a line feed. A failure to
/// write is ignored.
///
/// @param totalKeptNodes number of kept lines in all files, without headers.
void writeNodeCount(const std::string& outputDirectory, std::int32_t totalKeptNodes);

} // namespace vadelclip
