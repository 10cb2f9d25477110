/// \file
/// The question "is the point in any polygon of the boundary?", answered without looking at most of the edges.
#pragma once

#include "boundary/boundary_set.hpp"
#include "boundary/index/polygon_grid.hpp"
#include "boundary/index/ring_rows.hpp"
#include "boundary/widened_box.hpp"

namespace vadelclip {

/// Answers exactly what asking `containsPoint` for each polygon of a finished set answers, bit for bit.
///
/// Built once per run, in time and memory linear in the number of vertices and polygons. Rings are cut into rows
/// (ring_rows.hpp), many polygons are told apart by a grid (polygon_grid.hpp), and what neither can take (two
/// vertices, holes, flat rings) is left to `containsPoint` itself.
class BoundaryIndex {
public:
    /// @param boundarySet_ has to outlive the index and to keep its polygons and vertices as they are. Writable,
    ///                     because `containsPoint` fills the edges of two-vertex polygons.
    explicit BoundaryIndex(BoundarySet& boundarySet_);

    /// Tells whether a point lies in any polygon of the set.
    bool anyContains(Point2D point) const;

    /// The box outside of which no polygon contains a point.
    const WidenedBox& extent() const { return extentOfSet; }

private:
    BoundarySet& boundarySet;
    WidenedBox extentOfSet;
    RingRows rows;
    PolygonGrid grid;
};

} // namespace vadelclip
