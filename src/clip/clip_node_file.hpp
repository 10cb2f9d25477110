/// \file
/// The clip pass over one node file, the one place where the boundary is applied to data.
#pragma once

#include "boundary/index/boundary_index.hpp"

#include <cstdint>
#include <string>

namespace vadelclip {

/// Copies the header and every line whose point lies in a polygon to the output file, byte for byte but for the line
/// end, each kept line flushed at once. An output file without kept lines is removed.
///
/// Neither stream is ever tested: an input that cannot be read looks empty, an output that cannot be written goes
/// unnoticed and its lines are counted all the same.
///
/// @param lineCount  how many lines to read behind the header, whatever the file holds by now; may be negative.
/// @param boundary   all polygons of the run.
/// @param linesDone  data lines of all files before this one.
/// @param totalLines data lines of all files. 0 makes the progress values infinite or not-a-number, on purpose.
/// @return the number of kept lines; 1 if the header is rejected now, which leaves an empty output file. Both are
///         kept on purpose.
/// @throws boost::filesystem::filesystem_error if the output file of a pass that kept nothing cannot be removed.
std::int32_t clipNodeFile(const std::string& inputPath, const std::string& outputPath, std::int32_t lineCount,
                          const BoundaryIndex& boundary, double linesDone, std::int32_t totalLines);

} // namespace vadelclip
