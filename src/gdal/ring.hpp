/// \file
/// A polygon with holes as lists of points.
#pragma once

#include "boundary/boundary_set.hpp"

#include <vector>

namespace vadelclip_gdal {

using vadelclip::Point2D;

/// The corners of a ring in its direction. The first one is not repeated at the end.
using Ring = std::vector<Point2D>;

struct RingsOfPolygon {
    Ring outer;
    std::vector<Ring> holes;
};

inline bool samePoint(Point2D a, Point2D b) {
    return a.x == b.x && a.y == b.y;
}

} // namespace vadelclip_gdal
