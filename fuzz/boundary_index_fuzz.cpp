/// \file
/// Compares `BoundaryIndex` and `containsPoint` with a second implementation of the containment test, which shares no line
/// with them and tests one polygon after the other: open and closed lists, segments, holes. The input is a boundary
/// (boundary_input.hpp) and points. Each boundary is also tested at many points of its geometry: on and next to
/// vertices, edges, heights of vertices, corners of boxes and the limits of the index's cells.

#include "boundary_input.hpp"
#include "fuzz_target.hpp"

#include "boundary/contains_point.hpp"
#include "boundary/index/boundary_index.hpp"
#include "boundary/index/cell_grids.hpp"
#include "boundary/ring_walk.hpp"
#include "boundary/widened_box.hpp"
#include "support/containment_oracle_support.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vadelclip {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Compares all three: the index, `containsPoint` and the oracle.
class Comparison {
public:
    explicit Comparison(const BoundarySet& set) : indexed(set), plain(set), index(indexed), coarseIndex(indexed, 1.0) {}

    void compare(Point2D point) {
        // No number that a node line can give.
        if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
            return;
        }
        // Up to the first polygon that holds the point.
        const bool expected =
            std::any_of(plain.polygons.begin(), plain.polygons.end(), [this, point](BoundaryPolygon& polygon) {
                const bool isInside = oracle::contains(polygon, point, plain.vertices, ways);
                if (containsPoint(polygon, point, plain.vertices) != isInside) {
                    report(point, isInside, "containsPoint");
                }
                return isInside;
            });
        if (index.anyContains(point) != expected) {
            report(point, expected, "the index");
        }
        if (coarseIndex.anyContains(point) != expected) {
            report(point, expected, "the index for one point");
        }
    }

    /// Compares at the position and at its neighbours among the doubles.
    void compareAround(Point2D point) {
        for (const double x : {std::nextafter(point.x, -infinity), point.x, std::nextafter(point.x, infinity)}) {
            compare({x, point.y});
        }
        compare({point.x, std::nextafter(point.y, -infinity)});
        compare({point.x, std::nextafter(point.y, infinity)});
    }

private:
    [[noreturn]] void report(Point2D point, bool isInside, std::string_view who) const {
        std::ostringstream text;
        text << std::hexfloat << "point " << point.x << ' ' << point.y << " is " << (isInside ? "inside" : "outside")
             << ", " << who << " differs; " << plain.polygons.size() << " polygons";
        reportFinding(text.str());
    }

    BoundarySet indexed;
    BoundarySet plain;
    BoundaryIndex index;
    BoundaryIndex coarseIndex;
    oracle::Ways ways{};
};

Point2D positionOf(const BoundarySet& set, const BoundaryPolygon& polygon, std::size_t position) {
    const std::size_t index = position % polygon.vertexIndices.size();
    const BoundaryVertex& vertex = set.vertices[static_cast<std::size_t>(polygon.vertexIndices[index])];
    return {vertex.x, vertex.y};
}

void compareAlongEdge(Comparison& comparison, Point2D from, Point2D to, double share) {
    const double y = from.y + (to.y - from.y) * share;
    comparison.compareAround({from.x + (to.x - from.x) * share, y});
    comparison.compareAround({crossingX(from, to, y), y});
    comparison.compareAround({crossingX(to, from, y), y});
}

void compareAtCorners(Comparison& comparison, const WidenedBox& box) {
    comparison.compareAround({box.minX, box.minY});
    comparison.compareAround({box.maxX, box.maxY});
    comparison.compareAround({box.minX, (box.minY + box.maxY) / 2.0});
    comparison.compareAround({(box.minX + box.maxX) / 2.0, box.maxY});
}

/// At the limits of the cells of all grids, on some edges of a ring.
void compareAtCellLimits(Comparison& comparison, const BoundarySet& set, const CellGrids& grids,
                         const BoundaryPolygon& polygon, std::size_t limits) {
    const std::size_t size = polygon.vertexIndices.size();
    for (std::size_t i = 0; size > 1 && i < limits; ++i) {
        const CellGrid& grid = grids.grids[i * 5 % grids.grids.size()];
        const auto row = static_cast<std::uint32_t>(i * 7 % grid.rows.count());
        const auto column = static_cast<std::uint32_t>(i * 11 % grid.columns.count());
        const double limitY = row == 0 ? polygon.boundingBox.minY : grid.rows.firstCoordinateOf(row);
        const double limitX = column == 0 ? polygon.boundingBox.minX : grid.columns.firstCoordinateOf(column);
        const Point2D from = positionOf(set, polygon, i * 3);
        const Point2D to = positionOf(set, polygon, i * 3 + 1);
        for (const double y : {std::nextafter(limitY, -infinity), limitY}) {
            comparison.compareAround({limitX, y});
            comparison.compareAround({crossingX(from, to, y), y});
        }
        comparison.compareAround({limitX, crossingX({from.y, from.x}, {to.y, to.x}, limitX)});
    }
}

/// Compares at points of some polygons and some of their vertices, as many as the plain loop has time for.
void compareOwnPoints(Comparison& comparison, const BoundarySet& set) {
    // A point costs a visit to each vertex and polygon. Half of the points go to vertices, half to whole polygons.
    constexpr std::size_t visits = 25000;
    constexpr std::size_t pointsPerVertex = 22;
    constexpr std::size_t pointsPerCellLimit = 25;
    const std::size_t points = visits / (set.vertices.size() + set.polygons.size() + 20);
    const std::size_t vertexStep = 1 + set.vertices.size() * pointsPerVertex / (points / 2 + 1);
    const std::size_t polygonStep = 1 + set.polygons.size() * 4 * pointsPerCellLimit / (points / 2 + 1);
    const std::size_t cellLimits = 1 + points * polygonStep / (4 * pointsPerCellLimit * (set.polygons.size() + 1));
    const CellGrids grids = buildCellGrids(set, infinity);
    std::size_t vertex = 0;
    for (std::size_t number = 0; number < set.polygons.size(); ++number) {
        const BoundaryPolygon& polygon = set.polygons[number];
        for (std::size_t i = 0; i < polygon.vertexIndices.size(); ++i, ++vertex) {
            if (vertex % vertexStep == 0) {
                const Point2D from = positionOf(set, polygon, i);
                const Point2D to = positionOf(set, polygon, i + 1);
                comparison.compareAround(from);
                comparison.compare({to.x, from.y});
                comparison.compare({(polygon.boundingBox.minX + polygon.boundingBox.maxX) / 2.0, from.y});
                compareAlongEdge(comparison, from, to, static_cast<double>(1 + vertex % 7) / 8.0);
            }
        }
        if (number % polygonStep == 0) {
            compareAtCorners(comparison, WidenedBox(polygon.boundingBox));
            compareAtCellLimits(comparison, set, grids, polygon, cellLimits);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputBytes input(data, size);
    const BoundarySet set = takeBoundary(input);
    Comparison comparison(set);
    for (int points = 0; !input.isEmpty() && points < 100; ++points) {
        const double x = takeCoordinate(input, 0.5, set);
        comparison.compare({x, takeCoordinate(input, 0.5, set)});
    }
    compareOwnPoints(comparison, set);
    return 0;
}

} // namespace vadelclip
