/// \file
/// What the legend of the map says.
#pragma once

#include "watch/map/points.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vadelwatch {

/// What it speaks of.
struct MapLegend {
    NodeCounts counts;
    std::uint64_t outside = 0; ///< Nodes beyond the part that is shown.
    std::size_t polygons = 0;
    bool showsDensity = false; ///< Darker means more nodes.
};

/// A colour or a line, and how much there is of it.
struct LegendEntry {
    std::string name;
    std::string count;

    bool operator==(const LegendEntry&) const = default;
};

struct LegendWords {
    LegendEntry kept; ///< With the share of all data lines, if there are any.
    LegendEntry dropped;
    LegendEntry boundary;
    bool showsDensity = false;
    std::vector<std::string> notes; ///< A line each, where there is something to say.
    std::string unit;               ///< Of the scale bar.
};

LegendWords wordsOf(const MapLegend& legend);

} // namespace vadelwatch
