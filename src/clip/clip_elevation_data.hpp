/// \file
/// The run.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstdint>
#include <string>

namespace vadelclip {

/// Clips every node file of the input directory to the polygons of the boundary file, into a new directory beside the
/// input directory.
///
/// @param boundarySet          emptied at entry, then filled from the boundary file.
/// @param inputParentDirectory may be empty, which names no directory: the run stops.
/// @param inputDirectoryName   joined to the parent.
/// @param outputDirectoryName  joined to the parent, never taken as a path of its own, may hold separators.
/// @param boundaryFilePath     used as it stands.
/// @return 0 for a finished run, 1 for a run that stopped with a reported message. Nothing is rolled back.
/// @throws boost::filesystem::filesystem_error and whatever else a library throws; nothing is caught here.
std::int32_t clipElevationData(BoundarySet& boundarySet, std::string inputParentDirectory,
                               std::string inputDirectoryName, std::string outputDirectoryName,
                               std::string boundaryFilePath);

} // namespace vadelclip
