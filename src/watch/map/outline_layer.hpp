/// \file
/// Draws the outlines, and circles around what is too small to be seen.
#pragma once

#include "watch/check/outlines.hpp"
#include "watch/map/canvas.hpp"
#include "watch/map/layout.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vadelwatch {

constexpr MapColour outlineColour{208, 72, 0};

/// Numbers of polygons for the legend.
struct OutlineCounts {
    std::size_t all = 0;
    std::size_t beyond = 0;   ///< Partly or wholly outside the map.
    std::size_t tooShort = 0; ///< With fewer than three vertices.
    std::size_t small = 0;    ///< In the map, but smaller than 10 pixels.
};

/// Clips a closed outline to a window.
///
/// @return lines of at least two positions each, all within the window, in the order of the outline. A single vertex in
///         the window is a line from itself to itself.
MapOutlines clipOutline(const std::vector<MapPosition>& outline, const MapExtent& window);

OutlineCounts countOutlines(const MapOutlines& outlines, const MapView& view);

/// Returns the width of the outlines in pixels: less for outlines of so much detail that wide lines would fill their bays.
double outlineWidthOf(const MapOutlines& outlines);

/// Draws the outlines a little translucent, so that lines that lie close together do not hide the nodes between them. Those
/// of narrow polygons are thinner and fainter: two lines would cover a corridor.
void drawOutlines(MapCanvas& canvas, const MapView& view, const MapOutlines& outlines, double lineWidth);

/// Draws a labelled circle around an extent that is in the map, but smaller than 10 pixels.
/// @return true if there is one.
bool drawMarker(MapCanvas& canvas, const MapView& view, const MapExtent& extent, MapColour colour,
                const std::string& label);

/// Draws circles around all small polygons, unless there are many of them.
/// @return true if there are any.
bool markSmallOutlines(MapCanvas& canvas, const MapView& view, const MapOutlines& outlines,
                       const OutlineCounts& counts);

} // namespace vadelwatch
