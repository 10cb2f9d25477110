/// \file
/// The clip pass over one node file, the only place where points are tested against the boundary.
#pragma once

#include "boundary/index/boundary_index.hpp"

#include <cstdint>
#include <string>

namespace vadelclip {

/// Copies the header and every line whose point is in a polygon to the output file. All bytes but the line end are
/// unchanged. Each kept line is flushed. An output file without kept lines is removed.
///
/// No stream is tested, on purpose: an input that cannot be read behaves like an empty one, and lines are counted even
/// if the output cannot be written.
///
/// @param lineCount  number of lines to read after the header, even if the file has changed; may be negative.
/// @param boundary   all polygons of the run.
/// @param linesDone  number of data lines in all files before this one.
/// @param totalLines number of data lines in all files. 0 makes the progress values infinite or NaN, on purpose.
/// @return the number of kept lines. If the header is rejected: 1, and the output file stays empty, on purpose.
/// @throws boost::filesystem::filesystem_error if the output file of a pass that kept nothing cannot be removed.
std::int32_t clipNodeFile(const std::string& inputPath, const std::string& outputPath, std::int32_t lineCount,
                          const BoundaryIndex& boundary, double linesDone, std::int32_t totalLines);

} // namespace vadelclip
