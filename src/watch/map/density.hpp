/// \file
/// How dark each node is drawn: where nodes are crowded, and unevenly so, darker means more of them.
#pragma once

#include "watch/map/raster.hpp"

#include <vector>

namespace vadelwatch {

struct MapDensity {
    /// False where nodes are sparse or evenly spread; every tone is then the same.
    bool uneven = false;
    /// One for each cell, from 0, light, to 1, dark. 0 where there are no nodes.
    std::vector<float> tones;
};

/// Averages the counts over small squares, since a regular grid of nodes would beat against the grid of pixels, and
/// spreads their logarithms from the 2nd to the 98th percentile over all tones.
MapDensity measureDensity(const MapRaster& raster);

} // namespace vadelwatch
