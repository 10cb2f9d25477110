/// \file
/// The definition of "inside", the tool's one geometric decision.
#pragma once

#include "boundary/boundary_set.hpp"

#include <vector>

namespace vadelclip {

/// Tells whether a point lies in a polygon or on its outline, as seen from above.
///
/// @param polygon      indices into `vertexTable`, in ring order, open or closed. Writable: the first call on
///                     a two-vertex polygon fills its `edges`; any other polygon is left as it is.
/// @param point        x and y in the same plane and unit as `vertexTable`; elevation is not looked at.
/// @param vertexTable  all vertices of the boundary file. Every index of `polygon` must be valid in it.
/// @return true inside or on the outline and in no child polygon. Never an error value.
/// @throws only what growing `edges` throws (std::bad_alloc, std::length_error).
///
/// Even-odd count along a ray towards positive x, after exact tests against the outline. Source of the idea:
/// W. R. Franklin, PNPOLY. Ours differs in how vertices at the point's height count; docs/geometry.md walks
/// through it. The bounding box only rejects and has the only tolerance; do not add another.
///
/// All arithmetic is IEEE double, each operation rounded on its own: build without floating-point contraction.
bool containsPoint(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable);

} // namespace vadelclip
