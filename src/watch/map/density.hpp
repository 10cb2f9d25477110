/// \file
/// How dark each node is drawn. If nodes are crowded and unevenly spread, darker means more nodes.
#pragma once

#include "watch/map/raster.hpp"

#include <vector>

namespace vadelwatch {

struct MapDensity {
    /// False if nodes are sparse or evenly spread. All tones are the same then.
    bool uneven = false;
    /// One for each cell, from 0 (light) to 1 (dark). 0 for a cell without nodes.
    std::vector<float> tones;
};

/// Averages the counts over small squares, because a regular grid of nodes and the grid of pixels make a moiré
/// pattern. Then spreads their logarithms from the 2nd to the 98th percentile over all tones.
MapDensity measureDensity(const MapRaster& raster);

} // namespace vadelwatch
