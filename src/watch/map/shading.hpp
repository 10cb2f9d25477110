/// \file
/// The nodes as they are seen: kept ones in colour over dropped ones in grey.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/density.hpp"
#include "watch/map/raster.hpp"

namespace vadelwatch {

/// The colour of kept and of dropped nodes, by tone from 0 to 1.
MapColour keptColour(float tone);
MapColour droppedColour(float tone);

/// The radius of the discs that stand for nodes, in pixels: just enough to leave no gaps in an even spread, within
/// limits.
double discRadius(double nodeSpacing);

/// Draws the nodes as an image of the raster's size, transparent where there are none.
PixelImage shadeNodes(const MapRaster& raster, const MapDensity& density, double radius);

/// Draws the nodes as one disc for each cell that holds any; right for few cells, and small and sharp in SVG then.
void drawDiscs(MapCanvas& canvas, const MapRaster& raster, const MapDensity& density, double radius,
               PixelPosition corner);

} // namespace vadelwatch
