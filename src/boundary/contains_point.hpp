/// \file
/// The definition of "inside a polygon".
#pragma once

#include "boundary/boundary_set.hpp"

#include <vector>

namespace vadelclip {

/// Returns true if a point is in a polygon or on its outline, and in none of its children.
///
/// @param polygon      indices into `vertexTable`, in ring order, open or closed. The first call fills the `edges` of a
///                     two-vertex polygon. No other polygon is changed.
/// @param point        x and y in the same plane and unit as `vertexTable`; there is no elevation.
/// @param vertexTable  all vertices of the boundary file. Every index of `polygon` must be valid in it.
/// @throws only what growing `edges` throws (std::bad_alloc, std::length_error).
///
/// Counts crossings along a ray towards positive x by the even-odd rule, and tests exactly if the point is on the
/// outline. The idea is from W. R. Franklin, PNPOLY. This function differs in how vertices at the point's height count:
/// see docs/geometry.md. The bounding box only rejects, and it has the only tolerance; do not add another.
///
/// All arithmetic is IEEE double, and each operation is rounded separately: build without floating-point contraction.
bool containsPoint(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable);

} // namespace vadelclip
