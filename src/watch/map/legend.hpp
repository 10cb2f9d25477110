/// \file
/// Title, axes, legend and scale bar of the map.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/legend_words.hpp"
#include "watch/map/view.hpp"

#include <string>

namespace vadelwatch {

constexpr MapColour outlineColour{208, 72, 0};

void drawTitle(MapCanvas& canvas, const MapView& view, const std::string& title);

/// Draws faint lines at the ticks. Called before everything else of the map is drawn.
void drawGrid(MapCanvas& canvas, const MapView& view);

/// Draws the frame of the map with ticks, labels and the names of the axes.
void drawAxes(MapCanvas& canvas, const MapView& view);

/// Draws the legend to the right of the map: the meaning of each colour, the number of its nodes, and the scale bar.
/// The length of the scale bar is in the unit of the coordinates, which the files do not name.
///
/// @param outlineWidth width of the outlines in the map, in pixels.
void drawLegend(MapCanvas& canvas, const MapView& view, const LegendWords& words, double outlineWidth);

} // namespace vadelwatch
