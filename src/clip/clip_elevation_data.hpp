/// \file
/// The sequence of steps of one run.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstdint>
#include <string>

namespace vadelclip {

/// Clips every node file of the input directory to the polygons of the boundary file, into a new directory next to the
/// input directory.
///
/// @param boundarySet          is emptied first, then filled from the boundary file.
/// @param inputParentDirectory may be empty: then it is not a directory, and the run stops.
/// @param inputDirectoryName   is joined to the parent.
/// @param outputDirectoryName  is joined to the parent, even if it is an absolute path. It may contain separators.
/// @param boundaryFilePath     is used unchanged.
/// @return 0 if the run finished, 1 if it stopped with a reported message. Nothing is rolled back.
/// @throws boost::filesystem::filesystem_error and any other exception of a library.
std::int32_t clipElevationData(BoundarySet& boundarySet, std::string inputParentDirectory,
                               std::string inputDirectoryName, std::string outputDirectoryName,
                               std::string boundaryFilePath);

} // namespace vadelclip
