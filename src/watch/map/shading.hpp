/// \file
/// Draws the nodes: kept ones in colour over dropped ones in grey.
#pragma once

#include "watch/map/canvas.hpp"
#include "watch/map/raster.hpp"

#include <span>

namespace vadelwatch {

/// Returns the colour of kept or of dropped nodes for a tone from 0 to 1.
MapColour keptColour(float tone);
MapColour droppedColour(float tone);

/// Returns the colour of kept nodes for an elevation from 0 to 1, or for -1 that of nodes without elevation.
MapColour elevationColour(float tone);

using ColourOfTone = MapColour (*)(float);

/// The tones of nodes, one for each cell of the raster. Refers to a density or elevations that must outlive it.
struct NodeShades {
    explicit NodeShades(const MapTones& density) : dropped(density.tones), kept(density.tones) {}
    NodeShades(const MapTones& density, const MapTones& elevations)
        : dropped(density.tones), kept(elevations.tones), colourOfKept(elevationColour) {}

    std::span<const float> dropped;
    std::span<const float> kept;
    ColourOfTone colourOfKept = keptColour;
};

/// Returns the radius of the discs of nodes, in pixels: within limits, the smallest that leaves no gaps between evenly
/// spread nodes.
double discRadius(double nodeSpacing);

/// Draws the nodes as an image of the raster's size, transparent where there are none.
PixelImage shadeNodes(const MapRaster& raster, const NodeShades& shades, double radius);

/// Draws only the pixels of kept nodes. Drawn over the outlines, so that these do not hide the nodes of a narrow polygon.
PixelImage shadeKeptCells(const MapRaster& raster, const NodeShades& shades);

/// Draws one disc for each cell with nodes. For few cells this is small and sharp in SVG.
void drawDiscs(MapCanvas& canvas, const MapRaster& raster, const NodeShades& shades, double radius,
               PixelPosition corner);

} // namespace vadelwatch
