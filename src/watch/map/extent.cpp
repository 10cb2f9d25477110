#include "watch/map/extent.hpp"

#include <algorithm>
#include <cmath>

namespace vadelwatch {

namespace {

constexpr double largestSizeRatio = 4.0;
constexpr double marginShare = 0.04;

/// Returns the longer side.
double sizeOf(const MapExtent& extent) {
    return std::max(widthOf(extent), heightOf(extent));
}

MapExtent grow(const MapExtent& extent, double distance) {
    return {extent.minX - distance, extent.minY - distance, extent.maxX + distance, extent.maxY + distance};
}

MapExtent intersect(const MapExtent& first, const MapExtent& second) {
    return {std::max(first.minX, second.minX), std::max(first.minY, second.minY), std::min(first.maxX, second.maxX),
            std::min(first.maxY, second.maxY)};
}

double largestMagnitude(const MapExtent& extent) {
    return std::max({std::abs(extent.minX), std::abs(extent.maxX), std::abs(extent.minY), std::abs(extent.maxY)});
}

/// A double has about 16 digits. If 12 of them are larger than the frame, about a thousand steps across it remain.
double smallestResolvedSize(const MapExtent& extent) {
    return std::max(largestMagnitude(extent) * 1e-12, 1e-290);
}

} // namespace

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

MapExtent chooseFrame(const MapExtent& points, const MapExtent& outlines) {
    const MapExtent all = joinExtents(points, outlines);
    if (isEmpty(points) || isEmpty(outlines)) {
        return all;
    }
    const bool pointsAreSmaller = sizeOf(points) < sizeOf(outlines);
    const MapExtent& smaller = pointsAreSmaller ? points : outlines;
    // Extents without overlap are both shown, because the user must see how far apart they are.
    const bool apart = isEmpty(intersect(points, outlines));
    if (apart || sizeOf(smaller) <= 0.0 || sizeOf(all) <= largestSizeRatio * sizeOf(smaller)) {
        return all;
    }
    return intersect(grow(smaller, sizeOf(smaller) / 2.0), all);
}

MapExtent addMargin(const MapExtent& frame) {
    const double size = sizeOf(frame);
    if (size > 0.0) {
        return grow(frame, std::max(size * marginShare, (smallestResolvedSize(frame) - size) / 2.0));
    }
    return grow(frame, std::max(0.5, largestMagnitude(frame) * 1e-9));
}

MapExtent fitAspect(const MapExtent& frame, double aspect) {
    const double width = std::max(widthOf(frame), heightOf(frame) / aspect);
    const double addedX = (width - widthOf(frame)) / 2.0;
    const double addedY = (width * aspect - heightOf(frame)) / 2.0;
    return {frame.minX - addedX, frame.minY - addedY, frame.maxX + addedX, frame.maxY + addedY};
}

} // namespace vadelwatch
