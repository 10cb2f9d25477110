#include "boundary/contains_point.hpp"

#include "boundary/boundary_edge.hpp"
#include "boundary/ring_walk.hpp"
#include "boundary/widened_box.hpp"

#include <cmath>
#include <cstddef>

namespace vadelclip {

namespace {

/// An outline as a cyclic sequence of positions, 0 to size - 1.
struct Ring {
    const std::vector<std::int32_t>& indices;
    const std::vector<BoundaryVertex>& vertexTable;

    std::size_t size() const { return indices.size(); }

    /// Closed by index, never by coordinates: a last vertex that repeats the coordinates of the first one is a separate
    /// vertex. The edge of length zero after it changes no result.
    bool isClosed() const { return indices.front() == indices.back(); }

    std::size_t distinctSize() const { return isClosed() ? size() - 1 : size(); }

    /// A closed list does not visit its repeated first entry twice.
    std::size_t successor(std::size_t position) const {
        if (position + 1 < size()) {
            return position + 1;
        }
        return isClosed() ? 1 : 0;
    }

    const BoundaryVertex& vertexAt(std::size_t position) const {
        return vertexTable[static_cast<std::size_t>(indices[position])];
    }
};

bool ringContains(const Ring& ring, Point2D point) {
    std::size_t position = 0;
    while (ring.vertexAt(position).y == point.y) {
        if (position + 1 == ring.size()) {
            // All vertices are at the point's height. The bounding box has already tested x, with its tolerance.
            return true;
        }
        ++position;
    }
    RingWalk walk(point, ring.vertexAt(position).x, ring.vertexAt(position).y);
    for (std::size_t visited = 0; visited < ring.distinctSize(); ++visited) {
        position = ring.successor(position);
        const BoundaryVertex& vertex = ring.vertexAt(position);
        if (walk.visit(vertex.x, vertex.y)) {
            return true;
        }
    }
    return walk.odd;
}

/// A point that is only close to a two-vertex polygon is outside. There is no tolerance, on purpose.
bool segmentContains(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable) {
    if (polygon.edges.empty()) {
        appendEdges(polygon.edges, polygon.vertexIndices, vertexTable);
    }
    // A list (a, b, a) has a second edge, which is not used.
    return distanceToEdge(polygon.edges.front(), point) == 0.0;
}

bool outlineContains(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable) {
    const Ring ring{polygon.vertexIndices, vertexTable};
    if (ring.distinctSize() < 2) {
        return false;
    }
    return ring.distinctSize() == 2 ? segmentContains(polygon, point, vertexTable) : ringContains(ring, point);
}

/// Children are holes. A child of a child is an island in the hole.
bool anyChildContains(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable) {
    for (BoundaryPolygon& child : polygon.childPolygons) {
        if (containsPoint(child, point, vertexTable)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool containsPoint(BoundaryPolygon& polygon, Point2D point, const std::vector<BoundaryVertex>& vertexTable) {
    if (polygon.vertexIndices.empty() || WidenedBox(polygon.boundingBox).rejects(point)) {
        return false;
    }
    return outlineContains(polygon, point, vertexTable) && !anyChildContains(polygon, point, vertexTable);
}

} // namespace vadelclip
