/// \file
/// The outlines of the boundary file for the map, and the part of them that a frame shows.
///
/// Reading here is the map's own and more lenient than the tool's, which has accepted the file before a picture is drawn.
#pragma once

#include "watch/map/extent.hpp"

#include <string>
#include <vector>

namespace vadelwatch {

/// The vertices of each polygon, as they stand in the file: open or closed, of any number.
using MapOutlines = std::vector<std::vector<MapPosition>>;

/// Reads the polygons of all groups of type "boundaries".
///
/// @param outlines receives them; coordinates that cannot be drawn are moved to the limit of what can.
/// @return empty on success, else a sentence that names the file. `outlines` holds what was read before then.
std::string readMapOutlines(const std::string& boundaryFile, MapOutlines& outlines);

MapExtent extentOf(const MapOutlines& outlines);

/// Cuts a closed outline to what a window shows, in the order of travel.
///
/// @return lines of at least two positions each, all within the window. A single vertex in the window
///         comes as a line from itself to itself.
MapOutlines clipOutline(const std::vector<MapPosition>& outline, const MapExtent& window);

} // namespace vadelwatch
