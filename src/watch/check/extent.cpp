#include "watch/check/extent.hpp"

#include <algorithm>
#include <cmath>

namespace vadelwatch {

bool isDrawable(MapPosition position) {
    // NaN is not drawable: each comparison with it is false.
    return std::abs(position.x) <= largestDrawable && std::abs(position.y) <= largestDrawable;
}

bool isEmpty(const MapExtent& extent) {
    return extent.minX > extent.maxX || extent.minY > extent.maxY;
}

double widthOf(const MapExtent& extent) {
    return extent.maxX - extent.minX;
}

double heightOf(const MapExtent& extent) {
    return extent.maxY - extent.minY;
}

bool holds(const MapExtent& extent, MapPosition position) {
    return position.x >= extent.minX && position.x <= extent.maxX && position.y >= extent.minY &&
           position.y <= extent.maxY;
}

void includePosition(MapExtent& extent, MapPosition position) {
    if (!isDrawable(position)) {
        return;
    }
    extent.minX = std::min(extent.minX, position.x);
    extent.minY = std::min(extent.minY, position.y);
    extent.maxX = std::max(extent.maxX, position.x);
    extent.maxY = std::max(extent.maxY, position.y);
}

MapExtent joinExtents(const MapExtent& first, const MapExtent& second) {
    // The infinite limits of an empty extent never win a comparison.
    return {std::min(first.minX, second.minX), std::min(first.minY, second.minY), std::max(first.maxX, second.maxX),
            std::max(first.maxY, second.maxY)};
}

} // namespace vadelwatch
