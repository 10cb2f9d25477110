/// \file
/// How many nodes fall on each pixel of the map: the memory of a picture, whatever the number of nodes.
#pragma once

#include "watch/map/extent.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vadelwatch {

struct RasterCell {
    /// All nodes, kept and dropped; stays at its largest value once that is reached.
    std::uint32_t nodes = 0;
    bool anyKept = false;
    bool anyDropped = false;
};

/// Rows from top to bottom: the first one holds the largest y.
struct MapRaster {
    int width = 0;
    int height = 0;
    MapExtent shown;
    std::vector<RasterCell> cells;
    /// Nodes beyond the limits of `shown`.
    std::uint64_t outside = 0;
};

/// @param shown the data at the limits of the raster; not empty, of some width and height.
MapRaster makeRaster(int width, int height, const MapExtent& shown);

void countNode(MapRaster& raster, MapPosition position, bool kept);

/// How many cells hold a node.
std::size_t occupiedCells(const MapRaster& raster);

/// The usual distance of neighbouring nodes, in cells: of an even spread over the part of the raster that has nodes in
/// its vicinity. 0 without nodes.
double nodeSpacing(const MapRaster& raster);

} // namespace vadelwatch
