/// \file
/// The outlines of the boundary file, and the part of them in a window.
///
/// This reader is more lenient than the tool's, which has read the file before.
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

/// Clips a closed outline to a window.
///
/// @return lines of at least two positions each, all within the window, in the order of the outline. A single vertex in
///         the window is a line from itself to itself.
MapOutlines clipOutline(const std::vector<MapPosition>& outline, const MapExtent& window);

} // namespace vadelwatch
