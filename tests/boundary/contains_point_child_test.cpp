// Child polygons: holes, and islands in holes.
#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

const Outline counterClockwiseHole = {{2, 2}, {8, 2}, {8, 8}, {2, 8}};
const Outline clockwiseHole = {{2, 2}, {2, 8}, {8, 8}, {8, 2}};

/// A polygon, and the table for its indices and those of its children.
struct Area {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon;

    bool contains(double x, double y) { return containsPoint(polygon, {x, y}, table); }
};

Area squareWithHoles(const std::vector<Outline>& holes) {
    Area area;
    area.polygon = makePolygon(area.table, counterClockwiseSquare);
    for (const Outline& hole : holes) {
        area.polygon.childPolygons.push_back(makePolygon(area.table, hole));
    }
    return area;
}

void expectInside(Area& area, const Outline& points) {
    for (const Point2D point : points) {
        EXPECT_TRUE(area.contains(point.x, point.y)) << asText(point);
    }
}

void expectOutside(Area& area, const Outline& points) {
    for (const Point2D point : points) {
        EXPECT_FALSE(area.contains(point.x, point.y)) << asText(point);
    }
}

} // namespace

TEST(ChildPolygon, isHole) {
    Area area = squareWithHoles({counterClockwiseHole});
    expectInside(area, {{1, 5}, {9, 5}, {5, 1}, {5, 9}, {10, 5}, {0, 0}});
    expectOutside(area, {{5, 5}, {2.1, 7.9}, {11, 5}});
}

TEST(ChildPolygon, outlineBelongsToHole) {
    Area area = squareWithHoles({counterClockwiseHole});
    expectOutside(area, {{2, 5}, {8, 5}, {5, 8}, {2, 2}});
    // A point on an edge towards greater x counts as below it.
    expectInside(area, {{5, 2}});
    Area other = squareWithHoles({clockwiseHole});
    expectOutside(other, {{2, 5}, {8, 5}, {5, 8}, {2, 2}, {5, 2}});
}

TEST(ChildPolygon, childOfChildIsIsland) {
    Area area = squareWithHoles({counterClockwiseHole});
    area.polygon.childPolygons[0].childPolygons = {makePolygon(area.table, {{4, 4}, {6, 4}, {6, 6}, {4, 6}})};
    expectInside(area, {{5, 5}, {6, 5}, {1, 5}});
    expectOutside(area, {{3, 5}, {7, 5}});

    // A pond in the island.
    area.polygon.childPolygons[0].childPolygons[0].childPolygons = {
        makePolygon(area.table, {{4.5, 4.5}, {5.5, 4.5}, {5.5, 5.5}, {4.5, 5.5}})};
    expectOutside(area, {{5, 5}});
    expectInside(area, {{5.75, 5}});
}

TEST(ChildPolygon, eachChildIsHole) {
    Area area = squareWithHoles({{{1, 1}, {3, 1}, {3, 3}, {1, 3}}, {{6, 6}, {8, 6}, {8, 8}, {6, 8}}});
    expectOutside(area, {{2, 2}, {7, 7}});
    expectInside(area, {{2, 7}});

    // An island in the first hole that the second hole covers is not inside.
    area.polygon.childPolygons[0].childPolygons = {makePolygon(area.table, {{1.5, 1.5}, {2.5, 1.5}, {2.5, 2.5}})};
    expectInside(area, {{2.25, 2}});
    area.polygon.childPolygons.push_back(makePolygon(area.table, {{2, 1.5}, {2.5, 1.5}, {2.5, 2.5}, {2, 2.5}}));
    expectOutside(area, {{2.25, 2}});
}

TEST(ChildPolygon, elsewhereChangesNothing) {
    Area area = squareWithHoles({{{20, 20}, {30, 20}, {30, 30}}, {{-9, -9}, {-8, -9}, {-8, -8}}});
    expectInside(area, {{5, 5}});
}

TEST(ChildPolygon, withoutOutlineChangesNothing) {
    Area area = squareWithHoles({});
    BoundaryPolygon empty;
    empty.boundingBox = {0, 0, 10, 10};
    empty.childPolygons = {makePolygon(area.table, counterClockwiseHole)};
    area.polygon.childPolygons = {empty, makePolygon(area.table, {{5, 5}})};
    EXPECT_TRUE(area.contains(5, 5));
}

TEST(ChildPolygon, testedInOrderUntilOneContainsPoint) {
    // A two-vertex child has an edge after it has been tested.
    const Outline segment = {{4, 6}, {6, 6}};
    Area area = squareWithHoles({segment, {{3, 3}, {7, 3}, {7, 7}, {3, 7}}, segment});
    EXPECT_FALSE(area.contains(5, 6));
    EXPECT_EQ(1u, area.polygon.childPolygons[0].edges.size());
    EXPECT_EQ(0u, area.polygon.childPolygons[2].edges.size());

    Area second = squareWithHoles({{{3, 3}, {7, 3}, {7, 7}, {3, 7}}, segment});
    EXPECT_FALSE(second.contains(5, 6));
    EXPECT_EQ(0u, second.polygon.childPolygons[1].edges.size());

    Area all = squareWithHoles({segment, segment, segment});
    EXPECT_TRUE(all.contains(4.5, 6.0000005));
    for (const BoundaryPolygon& child : all.polygon.childPolygons) {
        EXPECT_EQ(1u, child.edges.size());
    }
}

TEST(ChildPolygon, isNotTestedForPointOutsideParent) {
    Area area = squareWithHoles({{{8, 5}, {20, 5}}});
    EXPECT_FALSE(area.contains(10.0000001, 5));
    EXPECT_FALSE(area.contains(15, 5));
    EXPECT_TRUE(area.polygon.childPolygons[0].edges.empty());
    EXPECT_FALSE(area.contains(9, 5));
    EXPECT_EQ(1u, area.polygon.childPolygons[0].edges.size());
}

TEST(ChildPolygon, isHoleInTwoVertexPolygon) {
    Area area;
    area.polygon = makePolygon(area.table, {{0, 0}, {10, 0}});
    area.polygon.childPolygons = {makePolygon(area.table, {{4, 0}, {6, 0}})};
    expectInside(area, {{3, 0}, {7, 0}});
    expectOutside(area, {{4, 0}, {5, 0}});
}

TEST(ChildPolygon, isHoleInFlatRing) {
    Area area;
    area.polygon = makePolygon(area.table, {{0, 0}, {10, 0}, {5, 0}});
    area.polygon.childPolygons = {makePolygon(area.table, {{4, 0}, {6, 0}, {5, 0}})};
    expectInside(area, {{3, 0}});
    expectOutside(area, {{5, 0}});
}

} // namespace vadelclip
