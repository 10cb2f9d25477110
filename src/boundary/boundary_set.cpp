#include "boundary/boundary_set.hpp"

namespace vadelclip {

namespace {

void includeVertex(BoundingBox& box, const BoundaryVertex& vertex) {
    if (vertex.x < box.minX) {
        box.minX = vertex.x;
    }
    if (vertex.x > box.maxX) {
        box.maxX = vertex.x;
    }
    if (vertex.y < box.minY) {
        box.minY = vertex.y;
    }
    if (vertex.y > box.maxY) {
        box.maxY = vertex.y;
    }
}

const BoundaryVertex& vertexAt(const std::vector<BoundaryVertex>& vertexTable, std::int32_t index) {
    return vertexTable[static_cast<std::size_t>(index)];
}

} // namespace

std::size_t distinctVertexCount(const BoundaryPolygon& polygon) {
    const std::vector<std::int32_t>& indices = polygon.vertexIndices;
    return !indices.empty() && indices.front() == indices.back() ? indices.size() - 1 : indices.size();
}

void clearBoundarySet(BoundarySet& boundarySet) {
    boundarySet.vertices.clear();
    boundarySet.polygons.clear();
}

void computeBoundingBox(BoundaryPolygon& polygon, const std::vector<BoundaryVertex>& vertexTable) {
    if (!polygon.vertexIndices.empty()) {
        const BoundaryVertex& first = vertexAt(vertexTable, polygon.vertexIndices.front());
        polygon.boundingBox = {first.x, first.y, first.x, first.y};
        for (const std::int32_t index : polygon.vertexIndices) {
            includeVertex(polygon.boundingBox, vertexAt(vertexTable, index));
        }
    }
    for (BoundaryPolygon& child : polygon.childPolygons) {
        computeBoundingBox(child, vertexTable);
    }
}

} // namespace vadelclip
