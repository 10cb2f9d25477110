/// \file
/// The number of nodes on each pixel of the map, and how dark each pixel is drawn. Memory does not depend on the
/// number of nodes.
#pragma once

#include "watch/map/layout.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace vadelwatch {

struct RasterCell {
    /// All nodes, kept and dropped. Does not count beyond its largest value.
    std::uint32_t nodes = 0;
    bool anyKept = false;
    bool anyDropped = false;
};

/// The mean elevation of the kept nodes in a cell.
struct CellElevation {
    float mean = 0.0F;
    std::uint32_t nodes = 0;
};

/// Cells in rows from top to bottom: the first row has the largest y.
struct MapRaster {
    int width = 0;
    int height = 0;
    MapExtent shown;
    std::vector<RasterCell> cells;
    /// One for each cell, or empty if elevations are not shown.
    std::vector<CellElevation> elevations;
    /// Nodes outside `shown`.
    std::uint64_t outside = 0;
};

/// @param shown the data at the limits of the raster. Its width and height are greater than 0.
MapRaster makeRaster(int width, int height, const MapExtent& shown, bool showsElevation = false);

/// @param elevation NaN for none.
void countNode(MapRaster& raster, MapPosition position, bool kept,
               float elevation = std::numeric_limits<float>::quiet_NaN());

/// Returns the number of cells with a node.
std::size_t occupiedCells(const MapRaster& raster);

/// Returns the distance between neighbouring cells with nodes, in cells, as if they were spread evenly over the part of the
/// raster that has nodes nearby. Nodes in the same cell make no difference. Returns 0 if there are no nodes.
double nodeSpacing(const MapRaster& raster);

/// How cells are coloured by a value: nodes per cell, or elevation.
struct MapTones {
    /// One for each cell, from 0 to 1.
    std::vector<float> tones;
    /// The values at tones 0 and 1.
    float low = 0.0F;
    float high = 0.0F;
    /// False if nodes are sparse or evenly spread. All tones are the same then.
    bool uneven = false;
};

/// Returns dark tones for many nodes per cell, and 0 for a cell without nodes. Averages the counts over small squares,
/// because a regular grid of nodes and the grid of pixels make a moiré pattern. Then spreads their logarithms from the
/// 2nd to the 98th percentile over all tones.
MapTones measureDensity(const MapRaster& raster);

/// Returns the tones of kept nodes by their elevation, -1 for a cell without elevation, and no tones if there is no
/// elevation at all. Spreads the elevations from the 2nd to the 98th percentile over all tones, without those more than
/// three times the interquartile range beyond the quartiles, so that wrong values do not take all colours.
MapTones measureElevations(const MapRaster& raster);

} // namespace vadelwatch
