/// \file
/// Title, legend, scale bar and warning of the map.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/layout.hpp"
#include "watch/map/outline_layer.hpp"
#include "watch/map/points.hpp"

#include <cstdint>
#include <string>

namespace vadelwatch {

/// What the legend explains, and its numbers.
struct MapLegend {
    NodeCounts counts;
    std::uint64_t outside = 0; ///< Nodes outside the part that is shown.
    OutlineCounts outlines;
    bool showsDensity = false; ///< Darker means more nodes.
    bool hasMarkers = false;   ///< Circles around what is too small to be seen.
    bool showsElevation = false;
    /// The numbers at the ends of the ramp: elevations, or nodes per pixel.
    float low = 0.0F;
    float high = 0.0F;
    double outlineWidth = 1.4; ///< In pixels.
};

/// Names and paths for the title, in valid UTF-8.
struct MapTitle {
    std::string input;
    std::string boundary;
    std::string details; ///< In small letters below the title.
};

/// Returns the text of the title.
std::string titleText(const std::string& input, const std::string& boundary);

/// Draws the title. Shortens long names, but not the text between them.
void drawTitle(MapCanvas& canvas, const MapView& view, const MapTitle& title);

/// Draws a red banner over the top of the map.
void drawWarning(MapCanvas& canvas, const MapView& view, const std::string& warning);

/// Draws the legend to the right of the map: each colour with its number of nodes, the share of data lines that were kept,
/// and a scale bar. Its unit is that of the coordinates, which the files do not name.
void drawLegend(MapCanvas& canvas, const MapView& view, const MapLegend& legend);

} // namespace vadelwatch
