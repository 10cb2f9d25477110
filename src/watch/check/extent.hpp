/// \file
/// Positions of nodes and vertices, and the rectangles that contain them.
#pragma once

#include "boundary/boundary_set.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vadelwatch {

/// Coordinates beyond this are not drawn, so that differences and products of drawn ones are always finite.
constexpr double largestDrawable = 1e300;

using MapPosition = vadelclip::Point2D;

/// A rectangle with its sides along the axes. Initially empty: it contains no position.
struct MapExtent {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();
};

inline bool isEmpty(const MapExtent& extent) {
    return extent.minX > extent.maxX || extent.minY > extent.maxY;
}

/// The extent must not be empty, here and in the next two functions.
inline double widthOf(const MapExtent& extent) {
    return extent.maxX - extent.minX;
}

inline double heightOf(const MapExtent& extent) {
    return extent.maxY - extent.minY;
}

inline double longerSideOf(const MapExtent& extent) {
    return std::max(widthOf(extent), heightOf(extent));
}

/// Returns the smallest extent that contains both. Either may be empty: infinite limits never win a comparison.
inline MapExtent joinExtents(const MapExtent& first, const MapExtent& second) {
    return {std::min(first.minX, second.minX), std::min(first.minY, second.minY), std::max(first.maxX, second.maxX),
            std::max(first.maxY, second.maxY)};
}

/// Returns the intersection, which is empty if the extents do not overlap.
inline MapExtent intersect(const MapExtent& first, const MapExtent& second) {
    return {std::max(first.minX, second.minX), std::max(first.minY, second.minY), std::min(first.maxX, second.maxX),
            std::min(first.maxY, second.maxY)};
}

/// Returns true if the position is in the extent or on its limits.
inline bool holds(const MapExtent& extent, MapPosition position) {
    return position.x >= extent.minX && position.x <= extent.maxX && position.y >= extent.minY &&
           position.y <= extent.maxY;
}

/// Extends the extent to the position. Ignores a position that is not drawable; NaN is not, because each comparison with
/// it is false.
inline void includePosition(MapExtent& extent, MapPosition position) {
    if (std::abs(position.x) <= largestDrawable && std::abs(position.y) <= largestDrawable) {
        extent = joinExtents(extent, {position.x, position.y, position.x, position.y});
    }
}

} // namespace vadelwatch
