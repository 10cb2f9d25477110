#include "boundary/boundary_edge.hpp"

#include <cmath>
#include <cstddef>

namespace vadelclip {

namespace {

/// The direction of a shorter edge is not scaled to length 1.
constexpr double minLength = 1e-12;

/// An edge of at most this squared length is treated as a point. This only prevents a division by almost zero.
constexpr double maxDegenerateSquaredLength = 1e-14;

double smaller(double a, double b) {
    return b < a ? b : a;
}

double larger(double a, double b) {
    return b > a ? b : a;
}

BoundaryEdge makeEdge(std::int32_t firstVertex, std::int32_t secondVertex,
                      const std::vector<BoundaryVertex>& vertexTable) {
    const BoundaryVertex& a = vertexTable[static_cast<std::size_t>(firstVertex)];
    const BoundaryVertex& b = vertexTable[static_cast<std::size_t>(secondVertex)];
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;

    BoundaryEdge edge;
    edge.length = std::hypot(dx, dy);
    if (edge.length < minLength) {
        edge.length = 1.0;
    }
    const double k = 1.0 / edge.length;
    const double ux = dx * k;
    const double uy = dy * k;
    edge.lineOffset = uy * a.x - ux * a.y;
    edge.squaredLength = dx * dx + dy * dy;
    edge.firstVertex = firstVertex;
    edge.secondVertex = secondVertex;
    edge.start = {a.x, a.y};
    edge.end = {b.x, b.y};
    edge.delta = {dx, dy};
    edge.direction = {ux, uy};
    edge.normal = {uy, -ux};
    edge.minCorner = {smaller(a.x, b.x), smaller(a.y, b.y)};
    edge.maxCorner = {larger(a.x, b.x), larger(a.y, b.y)};
    return edge;
}

} // namespace

void appendEdges(std::vector<BoundaryEdge>& edges, const std::vector<std::int32_t>& vertexIndices,
                 const std::vector<BoundaryVertex>& vertexTable) {
    for (std::size_t i = 0; i + 1 < vertexIndices.size(); ++i) {
        edges.push_back(makeEdge(vertexIndices[i], vertexIndices[i + 1], vertexTable));
    }
}

double distanceToEdge(const BoundaryEdge& edge, Point2D point) {
    const double px = point.x - edge.start.x;
    const double py = point.y - edge.start.y;
    if (edge.squaredLength <= maxDegenerateSquaredLength) {
        return std::hypot(px, py);
    }
    const double dx = edge.delta.x;
    const double dy = edge.delta.y;
    // The divisor is not edge.squaredLength: each operation is rounded separately.
    const double t = (dx * px + dy * py) / (dx * dx + dy * dy);
    if (t < 0.0) {
        return std::hypot(px, py);
    }
    if (t > 1.0) {
        return std::hypot(point.x - edge.end.x, point.y - edge.end.y);
    }
    return std::abs(px * edge.normal.x + py * edge.normal.y);
}

} // namespace vadelclip
