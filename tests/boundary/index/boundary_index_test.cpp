/// The index against its definition: `containsPoint` for each polygon in turn. Any difference is a wrong result.

#include "boundary/index/boundary_index.hpp"

#include "boundary/contains_point.hpp"
#include "support/boundary_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace vadelclip {

namespace {

using Random = std::mt19937_64;

double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

std::size_t pick(Random& random, std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

bool anyPolygonContains(BoundarySet& set, Point2D point) {
    return std::any_of(set.polygons.begin(), set.polygons.end(),
                       [&set, point](BoundaryPolygon& polygon) { return containsPoint(polygon, point, set.vertices); });
}

/// A double, or one of its neighbours.
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

/// A height at which some number of equal rows would begin.
double rowLimit(Random& random, const BoundingBox& box) {
    const std::size_t count = 2 + pick(random, 40);
    return box.minY + (box.maxY - box.minY) * static_cast<double>(pick(random, count)) / static_cast<double>(count);
}

/// A point where shortcuts would show: on or next to a vertex, an edge, the height of a vertex, a row's limit.
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

/// Asks both ways for many points. A polygon's answer to a point that is no number is not compared: no line gives one.
void compare(BoundarySet set, Random& random, int pointCount) {
    const BoundaryIndex index(set);
    for (int i = 0; i < pointCount; ++i) {
        const Point2D point = awkwardPoint(random, set);
        if (std::isnan(point.x) || std::isnan(point.y)) {
            continue;
        }
        const bool expected = anyPolygonContains(set, point);
        ASSERT_EQ(index.anyContains(point), expected)
            << std::hexfloat << "point " << point.x << ' ' << point.y << ", " << set.polygons.size()
            << " polygons, first of " << set.polygons.front().vertexIndices.size();
    }
}

Outline randomRing(Random& random, std::size_t size, double scale) {
    Outline ring;
    for (std::size_t i = 0; i < size; ++i) {
        ring.push_back({scale * uniform(random, -1.0, 1.0), scale * uniform(random, -1.0, 1.0)});
    }
    return ring;
}

/// Few different coordinates, so that nearly every point shares a height with a vertex; repeated vertices, flat runs.
Outline gridRing(Random& random, std::size_t size, std::size_t cells, double scale = 1.0) {
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

Outline comb(std::size_t teeth, double skew) {
    Outline ring;
    for (std::size_t i = 0; i < teeth; ++i) {
        const auto x = static_cast<double>(i);
        ring.push_back({x, 0.0});
        ring.push_back({x + 0.5 + skew, 10.0});
    }
    ring.push_back({static_cast<double>(teeth), -1.0});
    ring.push_back({0.0, -1.0});
    return ring;
}

Outline moved(Outline ring, double factor, Point2D by) {
    for (Point2D& point : ring) {
        point = {point.x * factor + by.x, point.y * factor + by.y};
    }
    return ring;
}

} // namespace

TEST(BoundaryIndex, answersLikeThePlainLoopOnRandomSelfCrossingRings) {
    Random random(1);
    for (int round = 0; round < workload(8000); ++round) {
        compare(setOf({randomRing(random, 3 + pick(random, 30), 100.0)}), random, 400);
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnIntegerGrids) {
    Random random(2);
    for (int round = 0; round < workload(12000); ++round) {
        compare(setOf({gridRing(random, 1 + pick(random, 24), 2 + pick(random, 9))}), random, 400);
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnSetsOfMixedPolygons) {
    Random random(3);
    for (int round = 0; round < workload(2000); ++round) {
        std::vector<Outline> rings;
        const std::size_t count = 1 + pick(random, 40);
        for (std::size_t i = 0; i < count; ++i) {
            const double size = std::pow(10.0, uniform(random, -2.0, 2.0));
            const Point2D centre{uniform(random, -50.0, 50.0), uniform(random, -50.0, 50.0)};
            rings.push_back(pick(random, 4) == 0 ? gridRing(random, pick(random, 6), 12)
                                                 : star(random, 3 + pick(random, 20), centre, size * 0.3, size));
        }
        compare(setOf(rings), random, 600);
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnTinyAndHugeCoordinates) {
    Random random(4);
    for (const double scale : {1e-320, 1e-300, 1e-160, 1e-10, 1e15, 1e150, 1e300, 4e307}) {
        for (int round = 0; round < workload(400); ++round) {
            compare(setOf({randomRing(random, 3 + pick(random, 20), scale)}), random, 200);
            compare(setOf({gridRing(random, 3 + pick(random, 20), 4, scale)}), random, 200);
        }
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopWhereDifferencesOverflow) {
    Random random(10);
    for (const Point2D scale : {Point2D{1.7e308, 10.0}, {10.0, 1.7e308}, {1.7e308, 1.7e308}, {1.7e308, 1e-300}}) {
        for (int round = 0; round < workload(300); ++round) {
            Outline ring = randomRing(random, 3 + pick(random, 20), 1.0);
            for (Point2D& point : ring) {
                point = {point.x * scale.x, point.y * scale.y};
            }
            compare(setOf({ring}), random, 200);
        }
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopFarFromTheOrigin) {
    Random random(5);
    for (int round = 0; round < workload(1500); ++round) {
        const Outline ring = randomRing(random, 3 + pick(random, 30), 1.0);
        compare(setOf({moved(ring, 0.01, {3382250.25, 6354640.91})}), random, 300);
        compare(setOf({moved(ring, 1e-6, {1e8, 1e8})}), random, 300);
        compare(setOf({moved(ring, 1e8, {1e8, -1e8 + 1e-3})}), random, 300);
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnSmoothSpikyAndCombedOutlines) {
    Random random(6);
    for (const std::size_t size : {100U, 1000U, 5000U}) {
        for (int round = 0; round < 4; ++round) {
            compare(setOf({star(random, size, {0.0, 0.0}, 9.99, 10.0)}), random, workload(5000));
            compare(setOf({star(random, size, {5.0, 5.0}, 0.5, 10.0)}), random, workload(5000));
            compare(setOf({comb(size / 2, 0.0)}), random, workload(5000));
            compare(setOf({comb(size / 2, 0.3)}), random, workload(5000));
            compare(setOf({comb(size / 2, 40.0)}), random, workload(5000));
        }
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnManyPolygons) {
    Random random(7);
    for (const double spread : {1.0, 50.0, 3000.0}) {
        std::vector<Outline> rings;
        for (int i = 0; i < 3000; ++i) {
            const Point2D centre{uniform(random, -spread, spread), uniform(random, -spread, spread)};
            rings.push_back(star(random, 3 + pick(random, 10), centre, 0.3, 1.0));
        }
        rings.push_back(star(random, 50, {1e6, 1e6}, 1.0, 2.0));
        rings.push_back(star(random, 50, {0.0, 0.0}, 1.0, spread));
        compare(setOf(rings), random, workload(20000));
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnPolygonsWithHoles) {
    Random random(8);
    for (int round = 0; round < workload(500); ++round) {
        BoundarySet set = setOf({gridRing(random, 3 + pick(random, 8), 12), gridRing(random, 3, 12)});
        BoundaryPolygon hole = makePolygon(set.vertices, gridRing(random, 2 + pick(random, 8), 12));
        hole.childPolygons.push_back(makePolygon(set.vertices, gridRing(random, 3 + pick(random, 8), 12)));
        set.polygons.front().childPolygons.push_back(hole);
        compare(set, random, 300);
    }
}

TEST(BoundaryIndex, answersLikeThePlainLoopOnListsClosedByTheirFirstIndex) {
    Random random(9);
    for (int round = 0; round < workload(500); ++round) {
        BoundarySet set = setOf({gridRing(random, 1 + pick(random, 12), 6)});
        set.polygons.front().vertexIndices.push_back(0);
        compare(set, random, 300);
    }
}

TEST(BoundaryIndex, holdsNothingForAnEmptySet) {
    BoundarySet set;
    EXPECT_FALSE(BoundaryIndex(set).anyContains({0.0, 0.0}));
}

TEST(BoundaryIndex, fillsTheEdgesOfATwoVertexPolygonOfTheSetItself) {
    BoundarySet set = setOf({{{0.0, 0.0}, {10.0, 0.0}}});
    const BoundaryIndex index(set);
    EXPECT_TRUE(index.anyContains({5.0, 0.0}));
    EXPECT_EQ(set.polygons.front().edges.size(), 1U);
}

TEST(BoundaryIndex, keepsTheEndsAndMiddleOfASegmentWhoseSquaresOverflow) {
    BoundarySet set = setOf({{{-8e307, 0.0}, {8e307, 0.0}}});
    const BoundaryIndex index(set);
    for (const double x : {-8e307, 0.0, 8e307}) {
        EXPECT_TRUE(index.anyContains({x, 0.0})) << x;
    }
}

} // namespace vadelclip
