#include "gdal/hole_join.hpp"

#include "boundary/contains_point.hpp"
#include "boundary/ring_walk.hpp"
#include "support/boundary_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

namespace vadelclip_gdal {

namespace {

const Ring square = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
const Ring diamond = {{4, 5}, {5, 4}, {6, 5}, {5, 6}};

std::string joinedText(const RingsOfPolygon& polygon) {
    return vadelclip::asText(joinHoles(polygon).value());
}

std::string textOf(const Ring& ring) {
    return vadelclip::asText(ring);
}

} // namespace

TEST(HoleJoin, leavesARingWithoutHolesUnchanged) {
    const Ring repeated = {{0, 0}, {0, 0}, {1, 0}, {0, 1}, {0, 0}};
    EXPECT_EQ(textOf(repeated), joinedText({repeated, {}}));
}

TEST(HoleJoin, cutsFromTheRightmostCornerToTheEdge) {
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 10}, {10, 5}, {6, 5}, {5, 6}, {4, 5}, {5, 4}, {6, 5}, {10, 5}, {10, 0}}),
              joinedText({square, {diamond}}));
}

TEST(HoleJoin, insertsTheCrossingOfTheContainmentTest) {
    const Ring outer = {{0, 0}, {0, 10}, {10, 10}, {7, 0}};
    const double x = vadelclip::crossingX({10, 10}, {7, 0}, 5.1);
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 10}, {x, 5.1}, {6, 5.1}, {4, 5}, {5, 4}, {6, 5.1}, {x, 5.1}, {7, 0}}),
              joinedText({outer, {{{4, 5}, {5, 4}, {6, 5.1}}}}));
}

TEST(HoleJoin, endsACutAtACorner) {
    const Ring outer = {{0, 0}, {0, 10}, {10, 5}};
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 5}, {6, 5}, {5, 6}, {4, 5}, {5, 4}, {6, 5}, {10, 5}}),
              joinedText({outer, {diamond}}));
}

TEST(HoleJoin, joinsAHoleToTheHoleRightOfIt) {
    const Ring left = {{1, 5}, {2, 4}, {3, 5}};
    EXPECT_EQ(textOf({{0, 0},
                      {0, 10},
                      {10, 10},
                      {10, 5},
                      {6, 5},
                      {5, 6},
                      {4, 5},
                      {3, 5},
                      {1, 5},
                      {2, 4},
                      {3, 5},
                      {4, 5},
                      {5, 4},
                      {6, 5},
                      {10, 5},
                      {10, 0}}),
              joinedText({square, {left, diamond}}));
}

TEST(HoleJoin, insertsSeveralCornersInTheOrderOfTheEdge) {
    const Ring upper = {{1, 7}, {2, 7}, {3, 8}};
    const Ring lower = {{7, 1}, {8, 1}, {7, 2}};
    const std::string downward = joinedText({square, {upper, diamond, lower}});
    EXPECT_EQ(
        textOf({{0, 0}, {0, 10}, {10, 10}, {10, 8}, {3, 8},  {1, 7}, {2, 7}, {3, 8}, {10, 8}, {10, 5}, {6, 5}, {5, 6},
                {4, 5}, {5, 4},  {6, 5},   {10, 5}, {10, 1}, {8, 1}, {7, 2}, {7, 1}, {8, 1},  {10, 1}, {10, 0}}),
        downward);
}

TEST(HoleJoin, givesATouchingHoleACutOfLengthZero) {
    const Ring touching = {{8, 5}, {10, 4}, {9, 3}};
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 10}, {10, 4}, {10, 4}, {9, 3}, {8, 5}, {10, 4}, {10, 4}, {10, 0}}),
              joinedText({square, {touching}}));
}

TEST(HoleJoin, prefersTheCornerOfTheLowestOfSeveralRightmostOnes) {
    const Ring box = {{4, 4}, {4, 6}, {6, 6}, {6, 4}};
    EXPECT_EQ(textOf({{0, 0}, {0, 10}, {10, 10}, {10, 4}, {6, 4}, {4, 4}, {4, 6}, {6, 6}, {6, 4}, {10, 4}, {10, 0}}),
              joinedText({square, {box}}));
}

TEST(HoleJoin, refusesAHoleWithNothingToItsRight) {
    EXPECT_FALSE(joinHoles({square, {{{14, 5}, {15, 4}, {16, 5}}}}));
    EXPECT_FALSE(joinHoles({square, {{{14, 15}, {15, 14}, {16, 15}}}}));
    EXPECT_FALSE(joinHoles({square, {{{4, 5}, {5, 5}, {5, 5}}}}));
}

TEST(HoleJoin, keepsPointsOnAndNextToTheCut) {
    vadelclip::BoundarySet set = vadelclip::setOf({joinHoles({square, {diamond}}).value()});
    const auto isKept = [&set](double x, double y) {
        return vadelclip::containsPoint(set.polygons[0], {x, y}, set.vertices);
    };
    for (const double y : {5.0, std::nextafter(5.0, 0.0), std::nextafter(5.0, 10.0)}) {
        EXPECT_TRUE(isKept(8, y));
        EXPECT_TRUE(isKept(6.5, y));
        EXPECT_FALSE(isKept(5, y));
        EXPECT_FALSE(isKept(10.5, y));
        EXPECT_TRUE(isKept(3, y));
    }
}

TEST(HoleJoin, joinsALongChainOfHoles) {
    const std::size_t count = static_cast<std::size_t>(vadelclip::workload(100000));
    RingsOfPolygon polygon{{{-1, -1}, {-1, 2}, {300001, 2}, {300001, -1}}, {}};
    for (std::size_t i = 0; i < count; ++i) {
        const double x = 3.0 * static_cast<double>(i);
        polygon.holes.push_back({{x, 0}, {x + 1, 1}, {x + 2, 0}});
    }
    // Each hole has three corners, one of them twice. Its cut ends at a corner of the hole right of it, which is repeated.
    EXPECT_EQ(4 + 1 + 5 * count, joinHoles(polygon).value().size());
}

} // namespace vadelclip_gdal
