/// \file
/// Draws the nodes: kept ones in colour over dropped ones in grey.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/raster.hpp"

namespace vadelwatch {

/// Returns the colour of kept or of dropped nodes for a tone from 0 to 1.
MapColour keptColour(float tone);
MapColour droppedColour(float tone);

/// Returns the radius of the discs of nodes, in pixels: within limits, the smallest that leaves no gaps between evenly
/// spread nodes.
double discRadius(double nodeSpacing);

/// Draws the nodes as an image of the raster's size, transparent where there are none.
PixelImage shadeNodes(const MapRaster& raster, const MapDensity& density, double radius);

/// Draws only the pixels of kept nodes. Drawn over the outlines, so that these do not hide the nodes of a narrow polygon.
PixelImage shadeKeptCells(const MapRaster& raster, const MapDensity& density, float opacity);

/// Draws one disc for each cell with nodes. For few cells this is small and sharp in SVG.
void drawDiscs(MapCanvas& canvas, const MapRaster& raster, const MapDensity& density, double radius,
               PixelPosition corner);

} // namespace vadelwatch
