// Polygons of two vertices: on the segment to the last bit, or outside.
#include "boundary/boundary_edge.hpp"
#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"
#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

bool segmentContains(Point2D a, Point2D b, Point2D point) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {a, b});
    return containsPoint(polygon, point, table);
}

std::string edgesText(const std::vector<BoundaryEdge>& edges) {
    BoundaryPolygon polygon;
    polygon.edges = edges;
    return asText(polygon);
}

} // namespace

TEST(TwoVertexPolygon, alongAxisContainsPointsBetweenEnds) {
    for (const double place : {0.0, 0x1p-1074, 1e-9, 0.1, 1.0 / 3.0, 5.0, 0x1.3ffffffffffffp+3, 10.0}) {
        EXPECT_TRUE(segmentContains({0, 0}, {10, 0}, {place, 0})) << place;
        EXPECT_TRUE(segmentContains({10, 0}, {0, 0}, {place, 0})) << place;
        EXPECT_TRUE(segmentContains({0, 0}, {0, 10}, {0, place})) << place;
        EXPECT_TRUE(segmentContains({0, 10}, {0, 0}, {0, place})) << place;
    }
}

TEST(TwoVertexPolygon, containsNoPointCloseToIt) {
    for (const double distance : {0x1p-1074, -0x1p-1074, 1e-300, 1e-15, -1e-9, 0.0000005, 1.0}) {
        for (const double place : {0.0, 5.0, 10.0}) {
            EXPECT_FALSE(segmentContains({0, 0}, {10, 0}, {place, distance})) << place << " " << distance;
            EXPECT_FALSE(segmentContains({0, 0}, {0, 10}, {distance, place})) << place << " " << distance;
        }
    }
}

TEST(TwoVertexPolygon, containsNoPointBeyondEnds) {
    for (const double place : {-0x1p-1020, -1e-9, -0.0000005, -1.0, 0x1.4000000000001p+3, 10.0000005, 11.0}) {
        EXPECT_FALSE(segmentContains({0, 0}, {10, 0}, {place, 0})) << place;
        EXPECT_FALSE(segmentContains({0, 0}, {0, 10}, {0, place})) << place;
    }
}

TEST(TwoVertexPolygon, mayContainNextDoubleAfterItsEnd) {
    EXPECT_TRUE(segmentContains({0, 0}, {0.1, 0}, {0.1, 0}));
    EXPECT_TRUE(segmentContains({0, 0}, {0.1, 0}, {0.10000000000000002, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {0.1, 0}, {0.10000000000000006, 0}));
}

TEST(TwoVertexPolygon, onSlopeRoundedDistanceDecides) {
    EXPECT_TRUE(segmentContains({0, 0}, {3, 1}, {0, 0}));
    EXPECT_TRUE(segmentContains({0, 0}, {3, 1}, {1.5, 0.5}));
    EXPECT_TRUE(segmentContains({0, 0}, {3, 1}, {3, 1}));
    EXPECT_TRUE(segmentContains({0, 0}, {3, 1}, {0.75, 0.25}));
    // The point is on the line and all numbers are exact, but the two products of the distance do not cancel.
    EXPECT_FALSE(segmentContains({0, 0}, {3, 1}, {1.125, 0.375}));
    EXPECT_FALSE(segmentContains({0, 0}, {3, 1}, {2.25, 0.75}));
}

// The last bit of the length is that of hypot in the C library: see docs/geometry.md. glibc 2.36 returns the larger length on
// x86-64, and the smaller one on ARM64.
TEST(TwoVertexPolygon, onSlopeDependsOnLastBitOfLength) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {43, 45}});
    const bool inside = containsPoint(polygon, {43, 45}, table);
    const double length = polygon.edges.front().length;
    EXPECT_EQ(inside ? 0x1.f1ee85590e273p+5 : 0x1.f1ee85590e272p+5, length);
}

TEST(TwoVertexPolygon, mayNotContainItsSecondVertex) {
    EXPECT_TRUE(segmentContains({0, 0}, {49, 5}, {0, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {49, 5}, {49, 5}));
    EXPECT_TRUE(segmentContains({49, 5}, {0, 0}, {49, 5}));
    EXPECT_FALSE(segmentContains({49, 5}, {0, 0}, {0, 0}));
}

TEST(TwoVertexPolygon, ofOnePositionIsThatPosition) {
    EXPECT_TRUE(segmentContains({4, 4}, {4, 4}, {4, 4}));
    EXPECT_FALSE(segmentContains({4, 4}, {4, 4}, {0x1.0000000000001p+2, 4}));
    EXPECT_FALSE(segmentContains({4, 4}, {4, 4}, {4, 0x1.fffffffffffffp+1}));
    EXPECT_FALSE(segmentContains({4, 4}, {4, 4}, {4.0000005, 4}));
}

TEST(TwoVertexPolygon, ofDegenerateLengthIsItsFirstVertex) {
    // 1e-7 squared rounds to the double before 1e-14, the square of the next double to the one after it.
    EXPECT_TRUE(segmentContains({0, 0}, {1e-7, 0}, {0, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {1e-7, 0}, {5e-8, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {1e-7, 0}, {1e-7, 0}));
    EXPECT_TRUE(segmentContains({0, 0}, {1.0000000000000001e-07, 0}, {5e-8, 0}));
    EXPECT_TRUE(segmentContains({0, 0}, {1.0000000000000001e-07, 0}, {1.0000000000000001e-07, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {1e-13, 0}, {5e-14, 0}));
}

TEST(TwoVertexPolygon, containsEndsAndMiddleIfSquaresOverflow) {
    for (const double x : {-8e307, 0.0, 8e307}) {
        EXPECT_TRUE(segmentContains({-8e307, 0}, {8e307, 0}, {x, 0})) << x;
    }
    EXPECT_FALSE(segmentContains({-8e307, 0}, {8e307, 0}, {0, 1e-300}));
}

// The next three are kept on purpose.
TEST(TwoVertexPolygon, containsPointsBeforeFirstVertexIfSquaresOverflow) {
    EXPECT_TRUE(segmentContains({0, 0}, {1e160, 0}, {-5e-07, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {1e150, 0}, {-5e-07, 0}));
}

TEST(TwoVertexPolygon, containsNothingIfDifferenceOverflows) {
    for (const double y : {0.0, 3.0}) {
        for (const Point2D point : {Point2D{-9e307, 0}, {0, y / 2}, {9e307, y}}) {
            EXPECT_FALSE(segmentContains({-9e307, 0}, {9e307, y}, point)) << point.x;
            EXPECT_FALSE(segmentContains({0, -9e307}, {y, 9e307}, {point.y, point.x})) << point.x;
        }
    }
}

TEST(TwoVertexPolygon, containsItsBoxIfOnlyLengthOverflows) {
    for (const Point2D point : {Point2D{0, 0}, {1.3e308, 1.3e308}, {0, 1.3e308}, {5, 1e300}, {-0.0000005, 0}}) {
        EXPECT_TRUE(segmentContains({0, 0}, {1.3e308, 1.3e308}, point)) << point.x << " " << point.y;
    }
    EXPECT_FALSE(segmentContains({0, 0}, {1.3e308, 1.3e308}, {-0.000002, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {1.2e308, 1.2e308}, {0, 1.2e308}));
}

TEST(TwoVertexPolygon, isRejectedByItsBoxFirst) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {10, 0}});
    EXPECT_FALSE(containsPoint(polygon, {5, 1}, table));
    EXPECT_TRUE(polygon.edges.empty());
    polygon.boundingBox = {0, 0, 4, 0};
    EXPECT_FALSE(containsPoint(polygon, {5, 0}, table));
    EXPECT_TRUE(polygon.edges.empty());
}

TEST(TwoVertexPolygon, doesNotContainNotANumber) {
    EXPECT_FALSE(segmentContains({0, 0}, {10, 0}, {notANumber, 0}));
    EXPECT_FALSE(segmentContains({0, 0}, {10, 0}, {5, notANumber}));
    EXPECT_FALSE(segmentContains({4, 4}, {4, 4}, {notANumber, 4}));
}

TEST(TwoVertexPolygon, keepsItsEdgeFromFirstCall) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {10, 0}});
    EXPECT_FALSE(containsPoint(polygon, {5, 0.0000005}, table));

    BoundaryPolygon expected = makePolygon(table, {{0, 0}, {10, 0}});
    expected.vertexIndices = {0, 1};
    appendEdges(expected.edges, {0, 1}, table);
    EXPECT_EQ(1u, polygon.edges.size());
    EXPECT_EQ(asText(expected), asText(polygon));

    // Neither the polygon nor a copy of it reads the table again.
    table[0].y = 7;
    table[1].y = 7;
    EXPECT_TRUE(containsPoint(polygon, {5, 0}, table));
    BoundaryPolygon copy = polygon;
    EXPECT_TRUE(containsPoint(copy, {5, 0}, table));
    EXPECT_EQ(asText(expected), asText(polygon));
    EXPECT_EQ(asText(expected), asText(copy));
}

TEST(TwoVertexPolygon, usesExistingEdges) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {10, 0}});
    BoundaryPolygon other = makePolygon(table, {{0, 0}, {10, 10}});
    appendEdges(polygon.edges, other.vertexIndices, table);
    polygon.boundingBox = other.boundingBox;
    EXPECT_TRUE(containsPoint(polygon, {5, 5}, table));
    EXPECT_FALSE(containsPoint(polygon, {5, 0}, table));
    EXPECT_EQ(1u, polygon.edges.size());
}

TEST(TwoVertexPolygon, closedByIndexDoesNotUseItsSecondEdge) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {49, 5}}, Closing::byIndex);
    ASSERT_EQ((std::vector<std::int32_t>{0, 1, 0}), polygon.vertexIndices);
    EXPECT_TRUE(containsPoint(polygon, {0, 0}, table));
    // The second edge begins at this vertex and would contain it.
    EXPECT_FALSE(containsPoint(polygon, {49, 5}, table));

    std::vector<BoundaryEdge> bothEdges;
    appendEdges(bothEdges, {0, 1}, table);
    appendEdges(bothEdges, {1, 0}, table);
    EXPECT_EQ(edgesText(bothEdges), edgesText(polygon.edges));
}

TEST(TwoVertexPolygon, ofOneIndexIsThatVertex) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{3, 4}});
    polygon.vertexIndices = {0, 0, 0};
    EXPECT_TRUE(containsPoint(polygon, {3, 4}, table));
    EXPECT_FALSE(containsPoint(polygon, {3.0000005, 4}, table));
    EXPECT_EQ(2u, polygon.edges.size());
}

TEST(ThreeVertices, closedByCoordinatesAreRing) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{0, 0}, {10, 10}}, Closing::byRepeatedPoint);
    ASSERT_EQ((std::vector<std::int32_t>{0, 1, 2}), polygon.vertexIndices);
    EXPECT_TRUE(containsPoint(polygon, {5, 5}, table));
    EXPECT_FALSE(containsPoint(polygon, {5, 6}, table));
    EXPECT_FALSE(containsPoint(polygon, {5, 4}, table));
    EXPECT_TRUE(containsPoint(polygon, {10, 10}, table));
    EXPECT_TRUE(polygon.edges.empty());
}

} // namespace vadelclip
