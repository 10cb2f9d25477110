/// \file
/// The texts of the legend.
#pragma once

#include "watch/map/points.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vadelwatch {

/// The numbers in the legend.
struct MapLegend {
    NodeCounts counts;
    std::uint64_t outside = 0; ///< Nodes outside the part that is shown.
    std::size_t polygons = 0;
    bool showsDensity = false; ///< Darker means more nodes.
};

/// The name of a colour or a line, and the number of things drawn with it.
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
    std::vector<std::string> notes; ///< Each is a line.
    std::string unit;               ///< Of the scale bar.
};

LegendWords wordsOf(const MapLegend& legend);

} // namespace vadelwatch
