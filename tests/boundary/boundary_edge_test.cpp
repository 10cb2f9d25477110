#include "boundary/boundary_edge.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vadelclip {

namespace {

std::vector<BoundaryVertex> tableOf(const Outline& points) {
    std::vector<BoundaryVertex> table;
    makePolygon(table, points);
    return table;
}

BoundaryEdge edgeBetween(Point2D a, Point2D b) {
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {0, 1}, tableOf({a, b}));
    return edges.at(0);
}

std::string allText(const std::vector<BoundaryEdge>& edges) {
    std::string result;
    for (const BoundaryEdge& edge : edges) {
        result += asText(edge) + "\n";
    }
    return result;
}

} // namespace

TEST(BoundaryEdge, hasAllItsValues) {
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {3, 1}, tableOf({{0, 0}, {4, 6}, {0, 0}, {1, 2}}));
    // direction.x is 3 times the rounded 1 / 5, which is not the rounded 3 / 5.
    EXPECT_EQ("length = 0x1.4p+2\n"
              "lineOffset = -0x1.999999999999cp-2\n"
              "squaredLength = 0x1.9p+4\n"
              "marked = 0\n"
              "firstVertex = 3\n"
              "secondVertex = 1\n"
              "start = (0x1p+0 0x1p+1)\n"
              "end = (0x1p+2 0x1.8p+2)\n"
              "delta = (0x1.8p+1 0x1p+2)\n"
              "direction = (0x1.3333333333334p-1 0x1.999999999999ap-1)\n"
              "normal = (0x1.999999999999ap-1 -0x1.3333333333334p-1)\n"
              "minCorner = (0x1p+0 0x1p+1)\n"
              "maxCorner = (0x1p+2 0x1.8p+2)\n"
              "attachedItems = [ ]\n\n",
              allText(edges));
}

TEST(BoundaryEdge, reversedEdgeHasOppositeDirection) {
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {1, 0}, tableOf({{1, 2}, {4, 6}}));
    EXPECT_EQ("length = 0x1.4p+2\n"
              "lineOffset = 0x1.99999999999ap-2\n"
              "squaredLength = 0x1.9p+4\n"
              "marked = 0\n"
              "firstVertex = 1\n"
              "secondVertex = 0\n"
              "start = (0x1p+2 0x1.8p+2)\n"
              "end = (0x1p+0 0x1p+1)\n"
              "delta = (-0x1.8p+1 -0x1p+2)\n"
              "direction = (-0x1.3333333333334p-1 -0x1.999999999999ap-1)\n"
              "normal = (-0x1.999999999999ap-1 0x1.3333333333334p-1)\n"
              "minCorner = (0x1p+0 0x1p+1)\n"
              "maxCorner = (0x1p+2 0x1.8p+2)\n"
              "attachedItems = [ ]\n\n",
              allText(edges));
}

TEST(BoundaryEdge, cornersAreMinimumAndMaximum) {
    const Point2D middle{10, 20};
    for (const Point2D other : {Point2D{11, 22}, Point2D{9, 22}, Point2D{9, 18}, Point2D{11, 18}, Point2D{10, 20}}) {
        const BoundaryEdge edge = edgeBetween(middle, other);
        EXPECT_EQ(asText(Point2D{std::min(10.0, other.x), std::min(20.0, other.y)}), asText(edge.minCorner));
        EXPECT_EQ(asText(Point2D{std::max(10.0, other.x), std::max(20.0, other.y)}), asText(edge.maxCorner));
    }
}

// The two zeros are equal. Of equal coordinates, the corners have that of the start.
TEST(BoundaryEdge, cornersHaveZeroOfStart) {
    for (const double first : {0.0, -0.0}) {
        const BoundaryEdge edge = edgeBetween({first, first}, {-first, -first});
        EXPECT_EQ(asText(Point2D{first, first}), asText(edge.minCorner));
        EXPECT_EQ(asText(Point2D{first, first}), asText(edge.maxCorner));
    }
}

TEST(BoundaryEdge, lengthOfLongEdgeDoesNotOverflow) {
    const BoundaryEdge edge = edgeBetween({0, 0}, {0x3p+600, 0x4p+600});
    EXPECT_EQ(0x5p+600, edge.length);
    EXPECT_EQ(std::numeric_limits<double>::infinity(), edge.squaredLength);
}

TEST(BoundaryEdge, directionBelowMinLengthIsDelta) {
    // The double before 1e-12.
    const double nearer = 0x1.19799812dea10p-40;
    EXPECT_EQ("length = 0x1p+0\n"
              "lineOffset = 0x0p+0\n"
              "squaredLength = 0x1.357c299a88ea5p-80\n"
              "marked = 0\n"
              "firstVertex = 0\n"
              "secondVertex = 1\n"
              "start = (0x0p+0 0x0p+0)\n"
              "end = (0x1.19799812dea1p-40 0x0p+0)\n"
              "delta = (0x1.19799812dea1p-40 0x0p+0)\n"
              "direction = (0x1.19799812dea1p-40 0x0p+0)\n"
              "normal = (0x0p+0 -0x1.19799812dea1p-40)\n"
              "minCorner = (0x0p+0 0x0p+0)\n"
              "maxCorner = (0x1.19799812dea1p-40 0x0p+0)\n"
              "attachedItems = [ ]\n",
              asText(edgeBetween({0, 0}, {nearer, 0})));
}

TEST(BoundaryEdge, edgeOfMinLengthKeepsItsLength) {
    const BoundaryEdge edge = edgeBetween({0, 0}, {0, 1e-12});
    EXPECT_EQ(1e-12, edge.length);
    EXPECT_EQ(asText(Point2D{0, 1}), asText(edge.direction));
    EXPECT_EQ(asText(Point2D{1, -0.0}), asText(edge.normal));
}

TEST(BoundaryEdge, edgeOfEqualVerticesHasLengthOne) {
    const BoundaryEdge edge = edgeBetween({7, 8}, {7, 8});
    EXPECT_EQ(1.0, edge.length);
    EXPECT_EQ(0.0, edge.squaredLength);
    EXPECT_EQ(asText(Point2D{0, 0}), asText(edge.direction));
}

TEST(AppendEdges, appendsOneForTwoConsecutiveEntries) {
    const std::vector<BoundaryVertex> table = tableOf({{0, 0}, {1, 0}, {1, 1}});
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {0, 2, 1, 0}, table);

    std::vector<BoundaryEdge> expected;
    appendEdges(expected, {0, 2}, table);
    appendEdges(expected, {2, 1}, table);
    appendEdges(expected, {1, 0}, table);
    EXPECT_EQ(3u, edges.size());
    EXPECT_EQ(allText(expected), allText(edges));
}

TEST(AppendEdges, appendsNoneForFewerThanTwoEntries) {
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {}, {});
    appendEdges(edges, {0}, tableOf({{1, 2}}));
    EXPECT_EQ("", allText(edges));
}

TEST(DistanceToEdge, isPerpendicularBetweenEnds) {
    const BoundaryEdge edge = edgeBetween({1, 2}, {11, 2});
    EXPECT_EQ(3.0, distanceToEdge(edge, {5, 5}));
    EXPECT_EQ(3.0, distanceToEdge(edge, {5, -1}));
    EXPECT_EQ(3.0, distanceToEdge(edge, {1, 5}));
    EXPECT_EQ(3.0, distanceToEdge(edge, {11, 5}));
    EXPECT_EQ(0.0, distanceToEdge(edge, {5, 2}));
}

TEST(DistanceToEdge, isToNearerEndOtherwise) {
    const BoundaryEdge edge = edgeBetween({1, 2}, {11, 2});
    EXPECT_EQ(5.0, distanceToEdge(edge, {-2, 6}));
    EXPECT_EQ(5.0, distanceToEdge(edge, {14, -2}));
    EXPECT_EQ(0x1p-52, distanceToEdge(edge, {1 - 0x1p-52, 2}));
    EXPECT_EQ(0x1p-49, distanceToEdge(edge, {11 + 0x1p-49, 2}));
}

TEST(DistanceToEdge, isPerpendicularAtBothEnds) {
    // With a wrong normal the result shows which formula was used.
    BoundaryEdge edge = edgeBetween({1, 2}, {11, 2});
    edge.normal = {100, 1000};
    EXPECT_EQ(4000.0, distanceToEdge(edge, {1, 6}));
    EXPECT_EQ(5000.0, distanceToEdge(edge, {11, 6}));
    EXPECT_EQ(1000.0, distanceToEdge(edge, {11, 2}));
}

TEST(DistanceToEdge, doesNotDivideByStoredSquaredLength) {
    BoundaryEdge edge = edgeBetween({0, 0}, {10, 0});
    edge.squaredLength = 1;
    EXPECT_EQ(3.0, distanceToEdge(edge, {5, 3}));
    edge.squaredLength = 1e6;
    EXPECT_EQ(5.0, distanceToEdge(edge, {14, 3}));
}

TEST(DistanceToEdge, edgeUpToDegenerateLengthIsPoint) {
    BoundaryEdge edge = edgeBetween({0, 0}, {10, 0});
    edge.squaredLength = 1e-14;
    EXPECT_EQ(13.0, distanceToEdge(edge, {5, 12}));
    edge.squaredLength = 0x1.6849b86a12b9cp-47; // the double after 1e-14
    EXPECT_EQ(12.0, distanceToEdge(edge, {5, 12}));
}

TEST(DistanceToEdge, isToStartForDegenerateEdge) {
    // 1e-7 squared rounds to the double before 1e-14, the second coordinate adds the rest.
    const BoundaryEdge degenerate = edgeBetween({0, 0}, {1e-7, 1e-15});
    EXPECT_EQ(1e-14, degenerate.squaredLength);
    EXPECT_EQ(5e-8, distanceToEdge(degenerate, {5e-8, 0}));

    const BoundaryEdge longer = edgeBetween({0, 0}, {1e-7, 2e-15});
    EXPECT_EQ(0x1.6849b86a12b9dp-47, longer.squaredLength);
    EXPECT_LT(distanceToEdge(longer, {5e-8, 0}), 1e-14);
}

} // namespace vadelclip
