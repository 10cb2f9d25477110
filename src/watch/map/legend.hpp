/// \file
/// Title, axes, legend and scale bar of the map.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/layout.hpp"
#include "watch/map/outline_layer.hpp"
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
    OutlineCounts outlines;
    bool showsDensity = false; ///< Darker means more nodes.
    bool hasMarkers = false;   ///< Circles around what is too small to be seen.
    bool showsElevation = false;
    /// The numbers at the ends of the ramp: elevations, or nodes per pixel.
    float low = 0.0F;
    float high = 0.0F;
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
    bool showsElevation = false;
    std::string ramp; ///< What the numbers at its ends are. Empty for no ramp.
    std::string low;
    std::string high;
    std::vector<std::string> notes; ///< Each is a line.
    std::string unit;               ///< Of the scale bar.
};

LegendWords wordsOf(const MapLegend& legend);

constexpr MapColour warningColour{176, 0, 32};

/// Names and paths for the title, in valid UTF-8.
struct MapTitle {
    std::string input;
    std::string boundary;
    std::string details; ///< In small letters below the title.
};

/// Returns the text of the title.
std::string titleText(const std::string& input, const std::string& boundary);

/// Draws the title. Shortens long names, and keeps the words between them.
void drawTitle(MapCanvas& canvas, const MapView& view, const MapTitle& title);

/// Draws faint lines at the ticks. Called before everything else of the map is drawn.
void drawGrid(MapCanvas& canvas, const MapView& view);

/// Draws the frame of the map with ticks, labels and the names of the axes.
void drawAxes(MapCanvas& canvas, const MapView& view);

/// Draws a red banner over the top of the map.
void drawWarning(MapCanvas& canvas, const MapView& view, const std::string& warning);

/// Draws the legend to the right of the map: the meaning of each colour, the number of its nodes, and the scale bar.
/// The length of the scale bar is in the unit of the coordinates, which the files do not name.
///
/// @param outlineWidth width of the outlines in the map, in pixels.
void drawLegend(MapCanvas& canvas, const MapView& view, const LegendWords& words, double outlineWidth);

} // namespace vadelwatch
