/// \file
/// The layout of the picture: the place of the map, the part of the data that it shows, the ticks.
#pragma once

#include "watch/map/axes.hpp"
#include "watch/map/canvas.hpp"
#include "watch/map/extent.hpp"

#include <functional>

namespace vadelwatch {

/// Returns the width of a text at the size of the tick labels, in pixels.
using LabelWidth = std::function<double(const std::string&)>;

/// The picture is 1600 pixels wide, and its height depends on the data. Both axes have the same scale.
struct MapView {
    int pictureWidth = 1600;
    int pictureHeight = 0;
    /// The map within the picture, in whole pixels.
    PixelRectangle plot;
    /// The data at the limits of `plot`.
    MapExtent shown;
    std::vector<MapTick> xTicks;
    std::vector<MapTick> yTicks;
};

/// Size of the tick labels and all plain texts, in pixels.
constexpr double labelSize = 20.0;

/// @param frame        the part of the data that must be visible; not empty. The map shows more if the frame is too
///                     wide or too high for the picture.
/// @param decimalPoint the decimal sign of the labels.
MapView layOutMap(const MapExtent& frame, const LabelWidth& labelWidth, char decimalPoint = '.');

/// Returns the number of pixels for one unit of the data.
double scaleOf(const MapView& view);

PixelPosition toPixel(const MapView& view, MapPosition position);

} // namespace vadelwatch
