#include "support/index_comparison_support.hpp"

#include "boundary/contains_point.hpp"
#include "boundary/index/boundary_index.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace vadelclip {

namespace {

bool anyPolygonContains(BoundarySet& set, Point2D point) {
    return std::any_of(set.polygons.begin(), set.polygons.end(),
                       [&set, point](BoundaryPolygon& polygon) { return containsPoint(polygon, point, set.vertices); });
}

/// Returns a double or one of its neighbours.
double nearby(Random& random, double value) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    switch (pick(random, 4)) {
    case 0:
        return std::nextafter(value, infinity);
    case 1:
        return std::nextafter(value, -infinity);
    default:
        return value;
    }
}

/// Returns a height at which a row may begin.
double rowLimit(Random& random, const BoundingBox& box) {
    const std::size_t count = 2 + pick(random, 40);
    return box.minY + (box.maxY - box.minY) * static_cast<double>(pick(random, count)) / static_cast<double>(count);
}

/// Returns a point where a shortcut may fail: on or next to a vertex, an edge, the height of a vertex, a limit of a row.
Point2D awkwardPoint(Random& random, const BoundarySet& set) {
    const BoundaryPolygon& polygon = set.polygons[pick(random, set.polygons.size())];
    const BoundingBox& box = polygon.boundingBox;
    if (polygon.vertexIndices.empty()) {
        return {uniform(random, -1.0, 1.0), uniform(random, -1.0, 1.0)};
    }
    const std::size_t size = polygon.vertexIndices.size();
    const std::size_t position = pick(random, size);
    const BoundaryVertex& a = set.vertices[static_cast<std::size_t>(polygon.vertexIndices[position])];
    const BoundaryVertex& b = set.vertices[static_cast<std::size_t>(polygon.vertexIndices[(position + 1) % size])];
    const double share = uniform(random, 0.0, 1.0);
    const double anyX = box.minX + (box.maxX - box.minX) * uniform(random, -0.05, 1.05);
    const double anyY = box.minY + (box.maxY - box.minY) * uniform(random, -0.05, 1.05);
    const double limit = nearby(random, rowLimit(random, box));
    switch (pick(random, 8)) {
    case 0:
        return {nearby(random, a.x), nearby(random, a.y)};
    case 1:
        return {nearby(random, a.x + (b.x - a.x) * share), nearby(random, a.y + (b.y - a.y) * share)};
    case 2:
        return {anyX, nearby(random, a.y)};
    case 3:
        return {nearby(random, a.x), nearby(random, b.y)};
    case 4:
        return {anyX, limit};
    case 5:
        return {nearby(random, ((limit - a.y) * (b.x - a.x)) / (b.y - a.y) + a.x), limit};
    case 6:
        return {anyX + uniform(random, -2e-6, 2e-6), box.maxY + uniform(random, -2e-6, 2e-6)};
    default:
        return {anyX, anyY};
    }
}

} // namespace

double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

std::size_t pick(Random& random, std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

int rounds(int full) {
    return std::max(1, std::getenv("VADELCLIP_ALL_ROUNDS") != nullptr ? workload(full) : workload(full) / 10);
}

void compareIndex(BoundarySet set, Random& random, int pointCount) {
    // With few points the index has a coarse grid.
    constexpr std::array pointCounts{1.0, 1e3, 1e5, std::numeric_limits<double>::infinity()};
    const BoundaryIndex index(set, pointCounts[pick(random, pointCounts.size())]);
    constexpr std::size_t maxPoints = 16;
    std::vector<Point2D> points; // whose cells are found at once
    std::array<bool, maxPoints> expectedOfPoints{};
    for (int i = 0; i < pointCount; ++i) {
        const Point2D point = awkwardPoint(random, set);
        if (std::isnan(point.x) || std::isnan(point.y)) {
            continue;
        }
        const bool expected = anyPolygonContains(set, point);
        ASSERT_EQ(index.anyContains(point), expected)
            << std::hexfloat << "point " << point.x << ' ' << point.y << ", " << set.polygons.size()
            << " polygons, first of " << set.polygons.front().vertexIndices.size();
        expectedOfPoints[points.size()] = expected;
        points.push_back(point);
        if (points.size() > pick(random, maxPoints)) {
            std::array<const CellEntry*, maxPoints> cells{};
            index.findCells(points, cells);
            for (std::size_t place = 0; place < points.size(); ++place) {
                ASSERT_EQ(index.anyContains(*cells[place], points[place]), expectedOfPoints[place]);
            }
            points.clear();
        }
    }
}

Outline randomRing(Random& random, std::size_t size, double scale) {
    Outline ring;
    for (std::size_t i = 0; i < size; ++i) {
        ring.push_back({scale * uniform(random, -1.0, 1.0), scale * uniform(random, -1.0, 1.0)});
    }
    return ring;
}

Outline gridRing(Random& random, std::size_t size, std::size_t cells, double scale) {
    Outline ring;
    for (std::size_t i = 0; i < size; ++i) {
        ring.push_back(
            {scale * static_cast<double>(pick(random, cells)), scale * static_cast<double>(pick(random, cells))});
    }
    return ring;
}

Outline star(Random& random, std::size_t size, Point2D centre, double innerRadius, double outerRadius) {
    Outline ring;
    for (std::size_t i = 0; i < size; ++i) {
        const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(size);
        const double radius = uniform(random, innerRadius, outerRadius);
        ring.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
    }
    return ring;
}

Outline randomWalk(Random& random, std::size_t size, std::size_t cells) {
    Outline ring;
    Point2D place{0.0, 0.0};
    for (std::size_t i = 0; i < size; ++i) {
        const double stepX = cells == 0 ? uniform(random, -1.0, 1.0) : static_cast<double>(pick(random, cells)) - 1.0;
        const double stepY = cells == 0 ? uniform(random, -1.0, 1.0) : static_cast<double>(pick(random, cells)) - 1.0;
        place = {place.x + stepX, place.y + stepY};
        ring.push_back(place);
    }
    return ring;
}

Outline moved(Outline ring, double factor, Point2D by) {
    for (Point2D& point : ring) {
        point = {point.x * factor + by.x, point.y * factor + by.y};
    }
    return ring;
}

} // namespace vadelclip
