/// \file
/// On which side of a line a point is, without rounding.
#pragma once

#include "boundary/boundary_set.hpp"

namespace vadelclip_gdal {

using vadelclip::Point2D;

/// Returns 1 if the point is left of the line from `from` to `to`, -1 if it is right of it, and 0 if it is exactly on it
/// or the two are the same point. All coordinates must be finite.
int sideOf(Point2D from, Point2D to, Point2D point);

} // namespace vadelclip_gdal
