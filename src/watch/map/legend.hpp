/// \file
/// What stands around the map: title, axes, legend, scale bar.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/legend_words.hpp"
#include "watch/map/view.hpp"

#include <string>

namespace vadelwatch {

constexpr MapColour outlineColour{208, 72, 0};

void drawTitle(MapCanvas& canvas, const MapView& view, const std::string& title);

/// Faint lines at the ticks, below everything else of the map.
void drawGrid(MapCanvas& canvas, const MapView& view);

/// The frame of the map with ticks, labels and the names of the axes.
void drawAxes(MapCanvas& canvas, const MapView& view);

/// Right of the map: what the colours mean, how many nodes there are of each, and below them the scale bar. Its
/// length is in the unit of the coordinates, whichever that is; the files do not tell.
///
/// @param outlineWidth of an outline in the map, in pixels.
void drawLegend(MapCanvas& canvas, const MapView& view, const LegendWords& words, double outlineWidth);

} // namespace vadelwatch
