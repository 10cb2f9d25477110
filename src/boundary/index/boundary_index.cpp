#include "boundary/index/boundary_index.hpp"

#include "boundary/boundary_extent.hpp"
#include "boundary/contains_point.hpp"
#include "boundary/index/ring_rows_builder.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <vector>

namespace vadelclip {

namespace {

/// The vertices of an outline, without the repeated index of a closed list.
std::vector<Point2D> ringOf(const BoundaryPolygon& polygon, const std::vector<BoundaryVertex>& vertices) {
    const std::vector<std::int32_t>& indices = polygon.vertexIndices;
    const std::size_t count = indices.front() == indices.back() ? indices.size() - 1 : indices.size();
    std::vector<Point2D> ring;
    ring.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const BoundaryVertex& vertex = vertices[static_cast<std::size_t>(indices[i])];
        ring.push_back({vertex.x, vertex.y});
    }
    return ring;
}

/// Cuts a polygon into rows where that is possible. Nothing, for one that holds no point at all.
std::optional<IndexedPolygon> indexPolygon(const BoundarySet& set, std::uint32_t number, RingRowsBuilder& builder) {
    const BoundaryPolygon& polygon = set.polygons[number];
    if (polygon.vertexIndices.empty()) {
        return std::nullopt;
    }
    const std::vector<Point2D> ring = ringOf(polygon, set.vertices);
    if (ring.size() < 2) {
        return std::nullopt;
    }
    const WidenedBox box(polygon.boundingBox);
    if (ring.size() > 2 && polygon.childPolygons.empty()) {
        if (const std::optional<RingInRows> inRows = builder.add(ring, box.minX)) {
            return IndexedPolygon{box, *inRows};
        }
    }
    return IndexedPolygon{box, {UniformCells(), IndexedPolygon::noRows, number}};
}

} // namespace

BoundaryIndex::BoundaryIndex(BoundarySet& boundarySet_)
    : boundarySet(boundarySet_), extentOfSet(extentOf(boundarySet_.polygons)) {
    // A boundary of few polygons can afford fine rows for each: then hardly any point lies on a chain's range.
    const double fewestRows = std::clamp(8192.0 / static_cast<double>(boundarySet.polygons.size()), 16.0, 128.0);
    RingRowsBuilder builder(rows, fewestRows);
    std::vector<IndexedPolygon> polygons;
    for (std::uint32_t number = 0; number < boundarySet.polygons.size(); ++number) {
        if (const std::optional<IndexedPolygon> polygon = indexPolygon(boundarySet, number, builder)) {
            polygons.push_back(*polygon);
        }
    }
    std::vector<std::uint32_t> members(polygons.size());
    std::iota(members.begin(), members.end(), 0);
    grid = PolygonGrid(polygons, members);
}

bool BoundaryIndex::anyContains(Point2D point) const {
    return grid.anyNear(point, [this, point](const IndexedPolygon& polygon) {
        if (polygon.box.rejects(point)) {
            return false;
        }
        if (polygon.ring.firstRow == IndexedPolygon::noRows) {
            return containsPoint(boundarySet.polygons[polygon.ring.ring], point, boundarySet.vertices);
        }
        return rows.ringContains(polygon.ring, polygon.box.minX, point);
    });
}

} // namespace vadelclip
