/// \file
/// Rectangles of the map in the unit of the data, and the choice of the part of the data that a picture shows.
#pragma once

#include <limits>

namespace vadelwatch {

/// Coordinates beyond this are not drawn: spans and products of the drawn ones stay finite without further checks.
constexpr double largestDrawable = 1e300;

struct MapPosition {
    double x = 0.0;
    double y = 0.0;
};

/// A rectangle with its sides along the axes. As made, it is empty and holds no position.
struct MapExtent {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();
};

bool isDrawable(MapPosition position);

bool isEmpty(const MapExtent& extent);

/// @pre the extent is not empty, here and below.
double widthOf(const MapExtent& extent);
double heightOf(const MapExtent& extent);

/// The limits belong to the extent.
bool holds(const MapExtent& extent, MapPosition position);

/// Grows the extent to hold the position; one that is not drawable changes nothing.
void includePosition(MapExtent& extent, MapPosition position);

/// The smallest extent that holds both. Either may be empty.
MapExtent joinExtents(const MapExtent& first, const MapExtent& second);

/// Chooses what the picture shows, without a margin: points and outlines together, unless the one reaches more than
/// four times as far as the other. Then the smaller one is shown with half its size around it, so that a single point
/// far off, or a small area in a large survey, does not make a picture of nothing.
///
/// @return empty only if both are.
MapExtent chooseFrame(const MapExtent& points, const MapExtent& outlines);

/// Adds a margin of 4 % of the longer side all around. A frame without any size gets one that its coordinates can
/// resolve, so that positions in it can be told apart.
MapExtent addMargin(const MapExtent& frame);

/// Widens the frame on its shorter side, both ways alike, until height divided by width is `aspect`.
MapExtent fitAspect(const MapExtent& frame, double aspect);

} // namespace vadelwatch
