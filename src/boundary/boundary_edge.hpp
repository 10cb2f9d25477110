/// \file
/// The edges of a two-vertex polygon and the distance of a point from one of them.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstdint>
#include <vector>

namespace vadelclip {

/// Appends one edge for each two consecutive entries of an index list, in order, with all fields computed.
///
/// @param vertexTable coordinates of the vertices. The edges keep copies of them.
void appendEdges(std::vector<BoundaryEdge>& edges, const std::vector<std::int32_t>& vertexIndices,
                 const std::vector<BoundaryVertex>& vertexTable);

/// Returns the distance of a point from an edge: perpendicular between its ends, otherwise to the nearer end.
///
/// The result is rounded: at the second end of a sloped edge it may differ from 0.0.
double distanceToEdge(const BoundaryEdge& edge, Point2D point);

} // namespace vadelclip
