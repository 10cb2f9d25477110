/// \file
/// The outlines of the boundary file, or why it cannot be read.
#pragma once

#include "watch/check/extent.hpp"

#include <string>
#include <vector>

namespace vadelwatch {

/// The vertices of each polygon as in the file: any number, open or closed.
using MapOutlines = std::vector<std::vector<MapPosition>>;

/// Reads the polygons of all groups of type "boundaries".
///
/// @param outlines receives them. Coordinates beyond `largestDrawable` are moved to this limit. After a failure it has
///                 the polygons read before.
/// @return an error message that names the file, empty on success.
std::string readMapOutlines(const std::string& boundaryFile, MapOutlines& outlines);

MapExtent extentOf(const MapOutlines& outlines);

/// Returns a sentence if the tool calls the file "not found" for another reason: it is not a regular file, may not be read, or
/// is not well-formed XML. Otherwise empty. Does not read a FIFO: another reader may need its bytes.
std::string whyBoundaryNotFound(const std::string& boundaryFile);

} // namespace vadelwatch
