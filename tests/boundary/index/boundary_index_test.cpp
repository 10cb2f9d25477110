/// Compares the index with `containsPoint` for each polygon in turn.

#include "boundary/index/boundary_index.hpp"

#include "support/boundary_support.hpp"
#include "support/index_comparison_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace vadelclip {

namespace {

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

} // namespace

TEST(BoundaryIndex, agreesOnSelfCrossingRings) {
    Random random(1);
    for (int round = 0; round < rounds(8000); ++round) {
        compareIndex(setOf({randomRing(random, 3 + pick(random, 30), 100.0)}), random, 400);
    }
}

TEST(BoundaryIndex, agreesOnIntegerGrids) {
    Random random(2);
    for (int round = 0; round < rounds(12000); ++round) {
        compareIndex(setOf({gridRing(random, 1 + pick(random, 24), 2 + pick(random, 9))}), random, 400);
    }
}

TEST(BoundaryIndex, agreesOnMixedPolygons) {
    Random random(3);
    for (int round = 0; round < rounds(2000); ++round) {
        std::vector<Outline> rings;
        const std::size_t count = 1 + pick(random, 40);
        for (std::size_t i = 0; i < count; ++i) {
            const double size = std::pow(10.0, uniform(random, -2.0, 2.0));
            const Point2D centre{uniform(random, -50.0, 50.0), uniform(random, -50.0, 50.0)};
            rings.push_back(pick(random, 4) == 0 ? gridRing(random, pick(random, 6), 12)
                                                 : star(random, 3 + pick(random, 20), centre, size * 0.3, size));
        }
        compareIndex(setOf(rings), random, 600);
    }
}

TEST(BoundaryIndex, agreesOnTinyAndHugeCoordinates) {
    Random random(4);
    for (const double scale : {1e-320, 1e-300, 1e-160, 1e-10, 1e15, 1e150, 1e300, 4e307}) {
        for (int round = 0; round < rounds(400); ++round) {
            compareIndex(setOf({randomRing(random, 3 + pick(random, 20), scale)}), random, 200);
            compareIndex(setOf({gridRing(random, 3 + pick(random, 20), 4, scale)}), random, 200);
        }
    }
}

TEST(BoundaryIndex, agreesWhereDifferencesOverflow) {
    Random random(10);
    for (const Point2D scale : {Point2D{1.7e308, 10.0}, {10.0, 1.7e308}, {1.7e308, 1.7e308}, {1.7e308, 1e-300}}) {
        for (int round = 0; round < rounds(300); ++round) {
            Outline ring = randomRing(random, 3 + pick(random, 20), 1.0);
            for (Point2D& point : ring) {
                point = {point.x * scale.x, point.y * scale.y};
            }
            compareIndex(setOf({ring}), random, 200);
        }
    }
}

TEST(BoundaryIndex, agreesFarFromTheOrigin) {
    Random random(5);
    for (int round = 0; round < rounds(1500); ++round) {
        const Outline ring = randomRing(random, 3 + pick(random, 30), 1.0);
        compareIndex(setOf({moved(ring, 0.01, {3382250.25, 6354640.91})}), random, 300);
        compareIndex(setOf({moved(ring, 1e-6, {1e8, 1e8})}), random, 300);
        compareIndex(setOf({moved(ring, 1e8, {1e8, -1e8 + 1e-3})}), random, 300);
    }
}

TEST(BoundaryIndex, agreesOnSmoothSpikyAndCombedOutlines) {
    Random random(6);
    for (const std::size_t size : {100U, 1000U, 5000U}) {
        for (int round = 0; round < 4; ++round) {
            compareIndex(setOf({star(random, size, {0.0, 0.0}, 9.99, 10.0)}), random, rounds(5000));
            compareIndex(setOf({star(random, size, {5.0, 5.0}, 0.5, 10.0)}), random, rounds(5000));
            compareIndex(setOf({comb(size / 2, 0.0)}), random, rounds(5000));
            compareIndex(setOf({comb(size / 2, 0.3)}), random, rounds(5000));
            compareIndex(setOf({comb(size / 2, 40.0)}), random, rounds(5000));
        }
    }
}

TEST(BoundaryIndex, agreesOnCoordinatesThatAreNotFinite) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Random random(15);
    for (int round = 0; round < rounds(1000); ++round) {
        Outline ring = gridRing(random, 2 + pick(random, 6), 4);
        const double strange = pick(random, 2) == 0 ? std::nan("") : infinity;
        Point2D& corner = ring[pick(random, ring.size())];
        (pick(random, 2) == 0 ? corner.x : corner.y) = strange;
        compareIndex(setOf({ring, gridRing(random, 4, 4)}), random, 100);
    }
}

TEST(BoundaryIndex, agreesOnPolygonsWithHoles) {
    Random random(8);
    for (int round = 0; round < rounds(500); ++round) {
        BoundarySet set = setOf({gridRing(random, 3 + pick(random, 8), 12), gridRing(random, 3, 12)});
        BoundaryPolygon hole = makePolygon(set.vertices, gridRing(random, 2 + pick(random, 8), 12));
        hole.childPolygons.push_back(makePolygon(set.vertices, gridRing(random, 3 + pick(random, 8), 12)));
        set.polygons.front().childPolygons.push_back(hole);
        compareIndex(set, random, 300);
    }
}

TEST(BoundaryIndex, agreesOnListsClosedByIndex) {
    Random random(9);
    for (int round = 0; round < rounds(500); ++round) {
        BoundarySet set = setOf({gridRing(random, 1 + pick(random, 12), 6)});
        set.polygons.front().vertexIndices.push_back(0);
        compareIndex(set, random, 300);
    }
}

TEST(BoundaryIndex, containsNothingForEmptySet) {
    BoundarySet set;
    EXPECT_FALSE(BoundaryIndex(set).anyContains({0.0, 0.0}));
}

TEST(BoundaryIndex, fillsEdgesOfTwoVertexPolygon) {
    BoundarySet set = setOf({{{0.0, 0.0}, {10.0, 0.0}}});
    const BoundaryIndex index(set);
    EXPECT_TRUE(index.anyContains({5.0, 0.0}));
    EXPECT_EQ(set.polygons.front().edges.size(), 1U);
}

TEST(BoundaryIndex, keepsPointsOfSegmentWhoseSquaresOverflow) {
    BoundarySet set = setOf({{{-8e307, 0.0}, {8e307, 0.0}}});
    const BoundaryIndex index(set);
    for (const double x : {-8e307, 0.0, 8e307}) {
        EXPECT_TRUE(index.anyContains({x, 0.0})) << x;
    }
}

} // namespace vadelclip
