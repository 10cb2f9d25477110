/// \file
/// Positions of nodes and vertices, and the rectangles that contain them.
#pragma once

#include <limits>

namespace vadelwatch {

/// Coordinates beyond this are not drawn, so that differences and products of drawn ones are always finite.
constexpr double largestDrawable = 1e300;

struct MapPosition {
    double x = 0.0;
    double y = 0.0;
};

/// A rectangle with its sides along the axes. Initially empty: it contains no position.
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

/// Returns true if the position is in the extent or on its limits.
bool holds(const MapExtent& extent, MapPosition position);

/// Extends the extent to the position. Ignores a position that is not drawable.
void includePosition(MapExtent& extent, MapPosition position);

/// Returns the smallest extent that contains both. Either may be empty.
MapExtent joinExtents(const MapExtent& first, const MapExtent& second);

} // namespace vadelwatch
