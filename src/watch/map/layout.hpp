/// \file
/// The layout of the picture: the part of the data that it shows, the place of the map, the axes.
#pragma once

#include "watch/check/extent.hpp"
#include "watch/map/axes.hpp"
#include "watch/map/canvas.hpp"

#include <functional>

namespace vadelwatch {

/// Chooses the part of the data that the picture shows, without a margin.
///
/// Usually this is the extent of points and outlines together. If they overlap, and this extent is more than four times as
/// large as the smaller one of them, it is the smaller one with half its size added on each side. So a distant point, or a
/// small area in a large survey, does not leave the picture nearly empty.
///
/// @return an empty extent only if both are empty.
MapExtent chooseFrame(const MapExtent& points, const MapExtent& outlines);

/// Adds a margin of 4 % of the longer side on each side. A frame of size 0 gets a size that doubles can resolve at its
/// coordinates, so that positions in it are different numbers.
MapExtent addMargin(const MapExtent& frame);

/// Extends the frame in one direction, equally on both sides, until height divided by width is `aspect`.
MapExtent fitAspect(const MapExtent& frame, double aspect);

/// Returns the width of a text at the size of the tick labels, in pixels.
using LabelWidth = std::function<double(const std::string&)>;

/// Both axes have the same scale.
struct MapView {
    int pictureWidth = 0;
    int pictureHeight = 0;
    /// The map within the picture, in whole pixels.
    PixelRectangle plot;
    /// The data at the limits of `plot`.
    MapExtent shown;
    std::vector<MapTick> xTicks;
    std::vector<MapTick> yTicks;
};

/// Width and height of a picture in pixels.
struct PictureSize {
    int width = 1600;
    int height = 0; ///< 0 for a height that depends on the data.
};

/// The colour of axes and texts.
constexpr MapColour ink{34, 34, 34};

/// Size of the tick labels and all plain texts, in pixels.
constexpr double labelSize = 20.0;

/// Chooses the places of map and axes in the picture.
///
/// @param frame the part of the data that must be visible; not empty. The map shows more if the frame is too wide or too
///              high for the picture.
MapView layOutMap(const MapExtent& frame, const LabelWidth& labelWidth, PictureSize size = {});

/// Returns the number of pixels for one unit of the data.
double scaleOf(const MapView& view);

PixelPosition toPixel(const MapView& view, MapPosition position);

/// Draws faint lines at the ticks. Called before everything else of the map is drawn.
void drawGrid(MapCanvas& canvas, const MapView& view);

/// Draws the frame of the map with ticks, labels and the names of the axes.
void drawAxes(MapCanvas& canvas, const MapView& view);

} // namespace vadelwatch
