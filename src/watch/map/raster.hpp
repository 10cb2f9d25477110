/// \file
/// The number of nodes on each pixel of the map. Its memory does not depend on the number of nodes.
#pragma once

#include "watch/map/extent.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vadelwatch {

struct RasterCell {
    /// All nodes, kept and dropped. Does not count beyond its largest value.
    std::uint32_t nodes = 0;
    bool anyKept = false;
    bool anyDropped = false;
};

/// Cells in rows from top to bottom: the first row has the largest y.
struct MapRaster {
    int width = 0;
    int height = 0;
    MapExtent shown;
    std::vector<RasterCell> cells;
    /// Nodes outside `shown`.
    std::uint64_t outside = 0;
};

/// @param shown the data at the limits of the raster. Its width and height are greater than 0.
MapRaster makeRaster(int width, int height, const MapExtent& shown);

void countNode(MapRaster& raster, MapPosition position, bool kept);

/// Returns the number of cells with a node.
std::size_t occupiedCells(const MapRaster& raster);

/// Returns the distance between neighbouring nodes, in cells, as if they were spread evenly over the part of the raster
/// that has nodes nearby. Returns 0 if there are no nodes.
double nodeSpacing(const MapRaster& raster);

} // namespace vadelwatch
