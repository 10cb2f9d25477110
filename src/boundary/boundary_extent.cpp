#include "boundary/boundary_extent.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vadelclip {

namespace {

// A box whose limit is not a number rejects nothing on that side, so the extent must not either.

double lowerLimit(double extent, double box) {
    return std::isnan(box) ? -std::numeric_limits<double>::infinity() : std::min(extent, box);
}

double upperLimit(double extent, double box) {
    return std::isnan(box) ? std::numeric_limits<double>::infinity() : std::max(extent, box);
}

} // namespace

WidenedBox extentOf(const std::vector<BoundaryPolygon>& polygons) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    WidenedBox extent;
    extent.minX = extent.minY = infinity;
    extent.maxX = extent.maxY = -infinity;
    for (const BoundaryPolygon& polygon : polygons) {
        if (polygon.vertexIndices.size() < 2) {
            continue; // contains no point
        }
        const WidenedBox box(polygon.boundingBox);
        extent.minX = lowerLimit(extent.minX, box.minX);
        extent.minY = lowerLimit(extent.minY, box.minY);
        extent.maxX = upperLimit(extent.maxX, box.maxX);
        extent.maxY = upperLimit(extent.maxY, box.maxY);
    }
    return extent;
}

} // namespace vadelclip
