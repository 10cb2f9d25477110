/// \file
/// The box outside of which no polygon contains a point.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/widened_box.hpp"

#include <vector>

namespace vadelclip {

/// Returns a box that rejects a coordinate only if the widened box of every polygon rejects it. So the extent can drop
/// a point by one coordinate alone. It rejects every point if no polygon can contain one.
WidenedBox extentOf(const std::vector<BoundaryPolygon>& polygons);

} // namespace vadelclip
