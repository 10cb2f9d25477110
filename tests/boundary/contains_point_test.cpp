#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"
#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vadelclip {

namespace {

/// Tests a point against an open outline with this bounding box.
bool containsWithBox(const Outline& outline, const BoundingBox& box, Point2D point) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, outline);
    polygon.boundingBox = box;
    return containsPoint(polygon, point, table);
}

} // namespace

TEST(ContainsPoint, polygonWithoutVerticesContainsNothing) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon;
    polygon.boundingBox = {0, 0, 10, 10};
    EXPECT_FALSE(containsPoint(polygon, {5, 5}, table));
    EXPECT_FALSE(containsPoint(polygon, {0, 0}, table));
    EXPECT_FALSE(containsPoint(polygon, {notANumber, notANumber}, table));
}

TEST(ContainsPoint, oneVertexContainsNothing) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon single = makePolygon(table, {{3, 4}});
    BoundaryPolygon pair = makePolygon(table, {{3, 4}}, Closing::byIndex);
    ASSERT_EQ(2u, pair.vertexIndices.size());
    EXPECT_FALSE(containsPoint(single, {3, 4}, table));
    EXPECT_FALSE(containsPoint(pair, {3, 4}, table));
    EXPECT_TRUE(pair.edges.empty());
}

TEST(ContainsPoint, squareIsCorrectAtEveryGridPoint) {
    for (const bool counterClockwise : {true, false}) {
        for (double x = -1; x <= 11; x += 0.5) {
            for (double y = -1; y <= 11; y += 0.5) {
                const bool inClosedSquare = x >= 0 && x <= 10 && y >= 0 && y <= 10;
                // The only part of the outline outside the polygon: a horizontal edge towards greater x with the inside
                // above it.
                const bool onLowerEdge = y == 0 && x > 0 && x < 10;
                const Outline& square = counterClockwise ? counterClockwiseSquare : clockwiseSquare;
                if (inClosedSquare && !(counterClockwise && onLowerEdge)) {
                    EXPECT_TRUE(isInside(square, {x, y}));
                } else {
                    EXPECT_TRUE(isOutside(square, {x, y}));
                }
            }
        }
    }
}

TEST(ContainsPoint, horizontalEdgeTowardsSmallerXIsInside) {
    for (const double x : {0x1p-1074, 0.1, 5.0, 0x1.3ffffffffffffp+3}) {
        EXPECT_TRUE(isInside(counterClockwiseSquare, {x, 10}));
        EXPECT_TRUE(isInside(clockwiseSquare, {x, 0}));
    }
}

TEST(ContainsPoint, horizontalEdgeTowardsGreaterXCountsAsJustBelow) {
    for (const double x : {0x1p-1074, 0.1, 5.0, 0x1.3ffffffffffffp+3}) {
        EXPECT_TRUE(isInside(clockwiseSquare, {x, 10}));
        EXPECT_TRUE(isOutside(counterClockwiseSquare, {x, 0}));
    }
}

TEST(ContainsPoint, nextDoubleOutsideSquareIsOutside) {
    for (const Outline& square : {counterClockwiseSquare, clockwiseSquare}) {
        EXPECT_TRUE(isOutside(square, {0x1.4000000000001p+3, 5}));
        EXPECT_TRUE(isOutside(square, {-0x1p-1074, 5}));
        EXPECT_TRUE(isOutside(square, {5, 0x1.4000000000001p+3}));
        EXPECT_TRUE(isOutside(square, {5, -0x1p-1074}));
    }
}

TEST(ContainsPoint, toleranceOfBoxDoesNotAffectRing) {
    for (const Outline& square : {counterClockwiseSquare, clockwiseSquare}) {
        EXPECT_TRUE(isOutside(square, {10.0000001, 5}));
        EXPECT_TRUE(isOutside(square, {-0.0000001, 5}));
        EXPECT_TRUE(isOutside(square, {5, 10.0000001}));
        EXPECT_TRUE(isOutside(square, {5, -0.0000001}));
    }
}

TEST(ContainsPoint, boxIsWidenedByRoundedSum) {
    struct Case {
        double min;
        double max;
        double lowest;
        double beyondLowest;
        double highest;
        double beyondHighest;
    };
    // 10 + 1e-06 rounds down, into the widened box; 5 - 1e-06 and 7 + 1e-06 round outwards.
    const std::vector<Case> cases = {
        {0, 10, -0x1.0c6f7a0b5ed8dp-20, -0x1.0c6f7a0b5ed8ep-20, 0x1.40000218def41p+3, 0x1.40000218def42p+3},
        {5, 7, 0x1.3ffffbce4217dp+2, 0x1.3ffffbce4217cp+2, 0x1.c0000431bde83p+2, 0x1.c0000431bde84p+2},
    };
    const Outline outline = {{-20, -20}, {20, -20}, {20, 20}, {-20, 20}};
    for (const Case& testCase : cases) {
        const BoundingBox box = {testCase.min, testCase.min, testCase.max, testCase.max};
        EXPECT_TRUE(containsWithBox(outline, box, {testCase.lowest, testCase.lowest}));
        EXPECT_TRUE(containsWithBox(outline, box, {testCase.highest, testCase.highest}));
        EXPECT_FALSE(containsWithBox(outline, box, {testCase.beyondLowest, 6}));
        EXPECT_FALSE(containsWithBox(outline, box, {6, testCase.beyondLowest}));
        EXPECT_FALSE(containsWithBox(outline, box, {testCase.beyondHighest, 6}));
        EXPECT_FALSE(containsWithBox(outline, box, {6, testCase.beyondHighest}));
    }
}

TEST(ContainsPoint, boxOfLargeCoordinatesHasNoTolerance) {
    // 1e-06 is less than half the distance of neighbours here.
    const Outline outline = {{0, 0}, {1e13, 0}, {1e13, 1e13}, {0, 1e13}};
    const BoundingBox box = {1e12, 1e12, 2e12, 2e12};
    EXPECT_TRUE(containsWithBox(outline, box, {1e12, 1e12}));
    EXPECT_TRUE(containsWithBox(outline, box, {2e12, 2e12}));
    EXPECT_FALSE(containsWithBox(outline, box, {std::nextafter(1e12, 0), 1.5e12}));
    EXPECT_FALSE(containsWithBox(outline, box, {1.5e12, std::nextafter(1e12, 0)}));
    EXPECT_FALSE(containsWithBox(outline, box, {std::nextafter(2e12, 1e13), 1.5e12}));
    EXPECT_FALSE(containsWithBox(outline, box, {1.5e12, std::nextafter(2e12, 1e13)}));
}

TEST(ContainsPoint, boxOnlyRejects) {
    EXPECT_FALSE(containsWithBox(counterClockwiseSquare, {6, 0, 10, 10}, {5, 5}));
    EXPECT_FALSE(containsWithBox(counterClockwiseSquare, {-90, -90, 90, 90}, {11, 5}));
    EXPECT_FALSE(containsWithBox(counterClockwiseSquare, {}, {5, 5}));
}

TEST(ContainsPoint, notANumberPassesBoxOnly) {
    for (const Outline& square : {counterClockwiseSquare, clockwiseSquare}) {
        EXPECT_TRUE(isOutside(square, {notANumber, 5}));
        EXPECT_TRUE(isOutside(square, {notANumber, 0}));
        EXPECT_TRUE(isOutside(square, {5, notANumber}));
        EXPECT_TRUE(isOutside(square, {notANumber, notANumber}));
    }
    // A flat ring shows that it passes the box, because there no other test reads x.
    EXPECT_TRUE(isInside({{0, 5}, {10, 5}, {4, 5}}, {notANumber, 5}));
    EXPECT_TRUE(isOutside({{0, 5}, {10, 5}, {4, 5}}, {5, notANumber}));
}

TEST(ContainsPoint, infinitePointIsOutside) {
    EXPECT_TRUE(isOutside(counterClockwiseSquare, {infinity, 5}));
    EXPECT_TRUE(isOutside(counterClockwiseSquare, {-infinity, 5}));
    EXPECT_TRUE(isOutside(counterClockwiseSquare, {5, infinity}));
    EXPECT_TRUE(isOutside(counterClockwiseSquare, {5, -infinity}));
}

TEST(ContainsPoint, carriedValuesHaveNoEffect) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, counterClockwiseSquare);
    for (BoundaryVertex& vertex : table) {
        vertex.z = notANumber;
        vertex.vertexTag = 7;
        vertex.attachedItems = {1, 2};
    }
    polygon.defaultedReal = notANumber;
    polygon.defaultedIndex = 3;
    EXPECT_TRUE(containsPoint(polygon, {5, 5}, table));
    EXPECT_FALSE(containsPoint(polygon, {5, 0}, table));
}

TEST(ContainsPoint, doesNotChangeRing) {
    for (const Closing closing : allClosings) {
        std::vector<BoundaryVertex> table;
        BoundaryPolygon polygon = makePolygon(table, counterClockwiseSquare, closing);
        const std::string before = asText(polygon);
        EXPECT_TRUE(containsPoint(polygon, {5, 5}, table));
        EXPECT_FALSE(containsPoint(polygon, {5, 0}, table));
        EXPECT_FALSE(containsPoint(polygon, {50, 5}, table));
        EXPECT_EQ(before, asText(polygon));
    }
}

TEST(ContainsPoint, indicesMayBeInAnyOrder) {
    std::vector<BoundaryVertex> table;
    makePolygon(table, {{0, 0}, {10, 10}, {99, 99}, {10, 0}, {0, 10}});
    BoundaryPolygon polygon;
    polygon.vertexIndices = {0, 3, 1, 4};
    computeBoundingBox(polygon, table);
    EXPECT_TRUE(containsPoint(polygon, {9, 1}, table));
    EXPECT_TRUE(containsPoint(polygon, {5, 10}, table));
    EXPECT_FALSE(containsPoint(polygon, {5, 0}, table));
    polygon.vertexIndices = {0, 1, 3, 4};
    EXPECT_FALSE(containsPoint(polygon, {5, 9}, table));
    EXPECT_TRUE(containsPoint(polygon, {9, 5}, table));
    EXPECT_TRUE(containsPoint(polygon, {1, 5}, table));
}

} // namespace vadelclip
