#include "boundary/boundary_extent.hpp"

#include "boundary/contains_point.hpp"
#include "boundary/index/boundary_index.hpp"
#include "support/boundary_support.hpp"
#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace vadelclip {

namespace {

bool anyPolygonHolds(BoundarySet& set, Point2D point) {
    return std::any_of(set.polygons.begin(), set.polygons.end(),
                       [&](BoundaryPolygon& polygon) { return containsPoint(polygon, point, set.vertices); });
}

} // namespace

TEST(BoundaryExtent, isTheWidenedBoxOfOnePolygon) {
    const BoundarySet set = setOf({{{2.0, 3.0}, {8.0, 3.0}, {8.0, 9.0}}});
    const WidenedBox extent = extentOf(set.polygons);
    EXPECT_EQ(extent.minX, 2.0 + -1e-06);
    EXPECT_EQ(extent.minY, 3.0 + -1e-06);
    EXPECT_EQ(extent.maxX, 8.0 + 1e-06);
    EXPECT_EQ(extent.maxY, 9.0 + 1e-06);
    EXPECT_FALSE(extent.rejectsX(extent.minX));
    EXPECT_FALSE(extent.rejectsX(extent.maxX));
    EXPECT_TRUE(extent.rejectsX(std::nextafter(extent.minX, -infinity)));
    EXPECT_TRUE(extent.rejectsX(std::nextafter(extent.maxX, infinity)));
}

TEST(BoundaryExtent, rejectsAllWithoutPolygonThatContainsPoint) {
    constexpr double largest = std::numeric_limits<double>::max();
    for (const BoundarySet& set : {BoundarySet(), setOf({{}, {{5.0, 5.0}}, {{notANumber, 1.0}}})}) {
        const WidenedBox extent = extentOf(set.polygons);
        for (const double x : {-largest, -1.0, 0.0, 5.0, largest}) {
            EXPECT_TRUE(extent.rejectsX(x)) << x;
        }
    }
}

TEST(BoundaryExtent, rejectsNothingWhereLimitIsNotNumber) {
    constexpr double largest = std::numeric_limits<double>::max();
    // A box keeps the coordinates of a first vertex that is not a number.
    const BoundarySet set = setOf({{{2.0, 3.0}, {8.0, 3.0}, {8.0, 9.0}},
                                   {{notANumber, 1.0}, {1.0, 1.0}, {1.0, 2.0}},
                                   {{4.0, 3.0}, {5.0, 3.0}, {5.0, 9.0}}});
    const WidenedBox extent = extentOf(set.polygons);
    EXPECT_FALSE(extent.rejects({-largest, 5.0}));
    EXPECT_FALSE(extent.rejects({largest, 5.0}));
    EXPECT_TRUE(extent.rejects({5.0, 0.5}));
}

TEST(BoundaryExtent, rejectsNoPointThatPolygonContains) {
    constexpr double largest = std::numeric_limits<double>::max();
    static constexpr double coordinates[] = {-infinity, -largest, -2.0,    -1e-06,   0.0,       1e-06,
                                             1.0,       1.000001, largest, infinity, notANumber};
    std::mt19937 random(1);
    const auto coordinate = [&random] { return coordinates[random() % std::size(coordinates)]; };
    int contained = 0;
    int rejected = 0;
    for (int round = 0; round < 50000; ++round) {
        std::vector<Outline> outlines(random() % 4);
        for (Outline& outline : outlines) {
            for (auto vertices = random() % 6; vertices > 0; --vertices) {
                outline.push_back({coordinate(), coordinate()});
            }
        }
        BoundarySet set = setOf(outlines);
        const WidenedBox extent = extentOf(set.polygons);
        for (const double x : coordinates) {
            const double y = coordinate();
            const bool inside = anyPolygonHolds(set, {x, y});
            ASSERT_FALSE(inside && extent.rejectsX(x)) << x << ' ' << y;
            ASSERT_FALSE(inside && extent.rejects({x, y})) << x << ' ' << y;
            contained += inside ? 1 : 0;
            rejected += extent.rejectsX(x) ? 1 : 0;
        }
    }
    EXPECT_GT(contained, 10000);
    EXPECT_GT(rejected, 10000);
}

TEST(BoundaryExtent, isKeptByIndex) {
    BoundarySet set = setOf({{{2.0, 3.0}, {8.0, 3.0}, {8.0, 9.0}}, {{-4.0, 20.0}, {5.0, 20.0}}});
    const WidenedBox extent = BoundaryIndex(set).extent();
    EXPECT_EQ(extent.minX, -4.0 + -1e-06);
    EXPECT_EQ(extent.minY, 3.0 + -1e-06);
    EXPECT_EQ(extent.maxX, 8.0 + 1e-06);
    EXPECT_EQ(extent.maxY, 20.0 + 1e-06);
}

} // namespace vadelclip
