/// \file
/// The edges of a two-vertex polygon and the distance of a point from one of them.
#pragma once

#include "boundary/boundary_set.hpp"

#include <cstdint>
#include <vector>

namespace vadelclip {

/// Appends one edge for each two consecutive entries of an index list, in order, with all fields computed.
///
/// @param vertexTable the edges keep copies of the coordinates it holds at this moment.
void appendEdges(std::vector<BoundaryEdge>& edges, const std::vector<std::int32_t>& vertexIndices,
                 const std::vector<BoundaryVertex>& vertexTable);

/// Gives the distance of a point from an edge: perpendicular between the ends, else to the nearer end.
///
/// The result is rounded, and exactly the rounded value counts: at the far end of a sloped edge it may differ
/// from 0.0.
double distanceToEdge(const BoundaryEdge& edge, Point2D point);

} // namespace vadelclip
