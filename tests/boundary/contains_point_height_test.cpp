// Vertices and edges at the point's height, and edges that reach it: which are crossings and which are outline.
#include "boundary/contains_point.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

/// Returns a ring with a box from x = 0 to 2 as left part, and with the given corners as right part: between (2, 0) and
/// (2, 10), right of x = 2. The points (1, 5) and (2, 5) are inside with any right part.
Outline withRightPart(const Outline& rightPart) {
    Outline ring = {{0, 10}, {0, 0}, {2, 0}};
    ring.insert(ring.end(), rightPart.begin(), rightPart.end());
    ring.push_back({2, 10});
    return ring;
}

void expectInsideBothWays(const Outline& ring, Point2D point) {
    EXPECT_TRUE(isInside(ring, point));
    EXPECT_TRUE(isInside(reversed(ring), point)) << "reversed";
}

void expectOutsideBothWays(const Outline& ring, Point2D point) {
    EXPECT_TRUE(isOutside(ring, point));
    EXPECT_TRUE(isOutside(reversed(ring), point)) << "reversed";
}

} // namespace

TEST(VertexAtTheHeight, passingIsOneCrossing) {
    expectInsideBothWays(withRightPart({{6, 5}}), {1, 5});
    expectOutsideBothWays({{0, 0}, {9, 0}, {6, 5}, {9, 10}, {0, 10}, {3, 5}}, {1, 5});
    expectOutsideBothWays({{0, 0}, {9, 0}, {6, 5}, {9, 10}, {0, 10}, {3, 5}}, {7, 5});
    expectInsideBothWays({{0, 0}, {9, 0}, {6, 5}, {9, 10}, {0, 10}, {3, 5}}, {4, 5});
}

TEST(VertexAtTheHeight, touchingIsNoCrossing) {
    // A tooth from above and one from below, right of the point.
    expectInsideBothWays(withRightPart({{9, 0}, {9, 10}, {6, 5}, {4, 10}}), {1, 5});
    expectInsideBothWays(withRightPart({{4, 0}, {6, 5}, {7, 0}, {9, 0}, {9, 10}}), {1, 5});
    // The ray of a point outside reaches only such a tip.
    expectOutsideBothWays({{0, 8}, {2, 8}, {5, 5}, {8, 8}, {8, 9}, {0, 9}}, {1, 5});
    expectOutsideBothWays({{0, 2}, {2, 2}, {5, 5}, {8, 2}, {8, 1}, {0, 1}}, {1, 5});
}

TEST(VertexAtTheHeight, leftOfPointIsNoCrossing) {
    expectOutsideBothWays({{0, 0}, {3, 5}, {0, 10}, {-3, 5}}, {3.0000001, 5});
    expectOutsideBothWays({{0, 8}, {2, 8}, {5, 5}, {8, 8}, {8, 9}, {0, 9}}, {6, 5});
    expectInsideBothWays({{0, 0}, {3, 5}, {0, 10}, {9, 10}, {9, 0}}, {5, 5});
}

TEST(RunAtTheHeight, passingIsOneCrossing) {
    expectInsideBothWays(withRightPart({{4, 5}, {6, 5}}), {1, 5});
    expectInsideBothWays(withRightPart({{6, 5}, {4, 5}}), {1, 5});
    expectInsideBothWays(withRightPart({{4, 5}, {8, 5}, {5, 5}, {6, 5}}), {1, 5});
}

TEST(RunAtTheHeight, touchingIsNoCrossing) {
    expectInsideBothWays(withRightPart({{9, 0}, {9, 10}, {7, 5}, {5, 5}, {4, 10}}), {1, 5});
    expectInsideBothWays(withRightPart({{4, 0}, {5, 5}, {7, 5}, {8, 0}, {9, 0}, {9, 10}}), {1, 5});
    expectOutsideBothWays({{0, 8}, {4, 5}, {6, 5}, {8, 8}}, {1, 5});
    expectOutsideBothWays({{0, 2}, {4, 5}, {6, 5}, {8, 2}}, {1, 5});
}

TEST(RunAtTheHeight, returningOverPointIsOutline) {
    // The run begins right of the point and first leads further right.
    const Outline ring = withRightPart({{4, 5}, {8, 5}, {3, 5}, {6, 9}});
    EXPECT_TRUE(isInside(ring, {3.5, 5}));
    EXPECT_TRUE(isInside(ring, {5, 5}));
    for (const double x : {4.0, 8.0, 3.0}) {
        expectInsideBothWays(ring, {x, 5});
    }
}

TEST(RunAtTheHeight, returningRunIsFoundAtItsSecondEdge) {
    // Left end, right end, left again: the edge to the right is not found as outline, the edge back is.
    expectInsideBothWays({{0, 0}, {2, 5}, {8, 5}, {1, 5}, {-1, 9}, {20, 9}, {20, 0}}, {5, 5});
}

TEST(HorizontalEdge, towardsGreaterXCountsAsJustBelow) {
    // A step in the outline at height 5, from (3, 5) to (7, 5), with the inside below or above it. Both rings are
    // counter-clockwise; the edge runs towards greater x where the inside is above.
    const Outline insideBelow = {{0, 0}, {10, 0}, {10, 5}, {7, 5}, {3, 5}, {3, 9}, {0, 9}};
    const Outline insideAbove = {{0, 0}, {3, 0}, {3, 5}, {7, 5}, {10, 5}, {10, 9}, {0, 9}};
    EXPECT_TRUE(isInside(insideBelow, {5, 5}));
    EXPECT_TRUE(isInside(reversed(insideBelow), {5, 5}));
    EXPECT_TRUE(isOutside(insideAbove, {5, 5}));
    EXPECT_TRUE(isInside(reversed(insideAbove), {5, 5}));
}

TEST(HorizontalEdge, inStepOfOutlineFollowsSameRule) {
    // A step in the right outline, between x = 2 and x = 8 at height 5. The first ring is wider above the step, so that
    // just below it is outside.
    EXPECT_TRUE(isOutside({{0, 0}, {2, 0}, {2, 5}, {8, 5}, {8, 9}, {0, 9}}, {5, 5}));
    EXPECT_TRUE(isInside({{0, 9}, {8, 9}, {8, 5}, {2, 5}, {2, 0}, {0, 0}}, {5, 5}));
    // This one is wider below the step.
    EXPECT_TRUE(isInside({{0, 0}, {8, 0}, {8, 5}, {2, 5}, {2, 9}, {0, 9}}, {5, 5}));
    EXPECT_TRUE(isInside({{0, 9}, {2, 9}, {2, 5}, {8, 5}, {8, 0}, {0, 0}}, {5, 5}));
}

TEST(FlatRing, containsPointsOfItsHeightInBox) {
    const Outline ring = {{0, 5}, {10, 5}, {4, 5}};
    for (const double x : {-0x1.0c6f7a0b5ed8dp-20, 0.0, 3.0, 5.0, 10.0, 10.0000005, 0x1.40000218def41p+3}) {
        expectInsideBothWays(ring, {x, 5});
    }
    for (const double x : {-0x1.0c6f7a0b5ed8ep-20, 0x1.40000218def42p+3, 10.000002, 1e300}) {
        expectOutsideBothWays(ring, {x, 5});
    }
}

TEST(FlatRing, containsNoPointOfOtherHeight) {
    const Outline ring = {{0, 5}, {10, 5}, {4, 5}};
    for (const double y : {0x1.4000000000001p+2, 0x1.3ffffffffffffp+2, 5.0000005, 4.9999995, 6.0, -5.0}) {
        for (const double x : {-0.0000005, 0.0, 3.0, 4.0, 10.0}) {
            expectOutsideBothWays(ring, {x, y});
        }
    }
}

TEST(FlatRing, ofOnePointIsThatPoint) {
    const Outline ring = {{3, 4}, {3, 4}, {3, 4}};
    EXPECT_TRUE(isInside(ring, {3, 4}));
    EXPECT_TRUE(isInside(ring, {3.0000005, 4}));
    EXPECT_TRUE(isOutside(ring, {3, 4.0000005}));
}

TEST(SlopedEdge, isOutlineWhereCrossingEqualsX) {
    // The inside is left of the edge from (0, 0) to (1, 3). At height 1 the crossing computes to the double nearest to a
    // third on the way up, and to the next one on the way down.
    const Outline ring = {{0, 0}, {1, 3}, {-5, 3}};
    EXPECT_TRUE(isInside(ring, {0x1.5555555555554p-2, 1}));
    EXPECT_TRUE(isInside(ring, {0x1.5555555555555p-2, 1}));
    EXPECT_TRUE(isOutside(ring, {0x1.5555555555556p-2, 1}));
    EXPECT_TRUE(isInside(reversed(ring), {0x1.5555555555555p-2, 1}));
    EXPECT_TRUE(isInside(reversed(ring), {0x1.5555555555556p-2, 1}));
    EXPECT_TRUE(isOutside(reversed(ring), {0x1.5555555555557p-2, 1}));
}

TEST(SlopedEdge, insideOnRightHasSameOutline) {
    const Outline ring = {{0, 0}, {1, 3}, {5, 3}};
    EXPECT_TRUE(isOutside(ring, {0x1.5555555555554p-2, 1}));
    EXPECT_TRUE(isInside(ring, {0x1.5555555555555p-2, 1}));
    EXPECT_TRUE(isOutside(reversed(ring), {0x1.5555555555555p-2, 1}));
    EXPECT_TRUE(isInside(reversed(ring), {0x1.5555555555556p-2, 1}));
}

TEST(SlopedEdge, multipliesBeforeItDivides) {
    // From (0, 0) to (9, 7), at height 3: 27 / 7 rounds to the middle one of these three doubles, 3 * (9 / 7) to the one
    // after it and (3 / 7) * 9 to the one before it.
    const Outline ring = {{0, 0}, {9, 7}, {-5, 7}};
    EXPECT_TRUE(isInside(ring, {0x1.edb6db6db6db6p+1, 3}));
    EXPECT_TRUE(isInside(ring, {0x1.edb6db6db6db7p+1, 3}));
    EXPECT_TRUE(isOutside(ring, {0x1.edb6db6db6db8p+1, 3}));
    const Outline insideOnTheRight = {{0, 0}, {9, 7}, {20, 7}};
    EXPECT_TRUE(isOutside(insideOnTheRight, {0x1.edb6db6db6db6p+1, 3}));
    EXPECT_TRUE(isInside(insideOnTheRight, {0x1.edb6db6db6db7p+1, 3}));
}

TEST(SlopedEdge, containsDecimalPointsOfTriangle) {
    const Outline decimals = {{0, 0}, {3, 1}, {0, 3}};
    EXPECT_TRUE(isInside(decimals, {0.3, 0.1}));
    EXPECT_TRUE(isInside(decimals, {1.5, 0.5}));
    EXPECT_TRUE(isInside(decimals, {2.7, 0.9}));
}

TEST(SlopedEdge, onOneSideIsDecidedWithoutRounding) {
    // The crossing of the first edge would compute to exactly these points, which are next to its end.
    const Outline leftTip = {{8.5, 5.5}, {3.1, 2.3}, {20, 0}};
    EXPECT_TRUE(isOutside(leftTip, {0x1.8ccccccccccccp+1, 0x1.2666666666667p+1})); // the double before 3.1, after 2.3
    const Outline rightTip = {{1.8, 8.8}, {4.3, 7.2}, {0, 0}};
    EXPECT_TRUE(isOutside(rightTip, {0x1.1333333333334p+2, 7.2})); // the double after 4.3
}

TEST(SlopedEdge, endingFromAboveMayRoundPastItsEnd) {
    // A few of the last bits right of the lowest vertex, the edge to that vertex computes to a crossing at the point.
    const Outline lowestVertex = {{79.74, 41.43}, {3.45, 24.27}, {-46.55, 42.43}};
    EXPECT_TRUE(isInside(lowestVertex, {3.45, 24.27}));
    EXPECT_TRUE(isInside(lowestVertex, {3.4500000000000006, 24.27}));
    EXPECT_TRUE(isOutside(lowestVertex, {3.45000000000001, 24.27}));
}

TEST(SlopedEdge, endingFromBelowDoesNotRoundPastItsEnd) {
    // The same triangle upside down.
    const Outline highestVertex = {{79.74, -41.43}, {3.45, -24.27}, {-46.55, -42.43}};
    EXPECT_TRUE(isInside(highestVertex, {3.45, -24.27}));
    EXPECT_TRUE(isOutside(highestVertex, {3.4500000000000006, -24.27}));
}

TEST(VerticalEdge, isOutlineBetweenItsEnds) {
    for (const double y : {0x1p-1074, 0.1, 1.0 / 3.0, 6.999999999999999}) {
        expectInsideBothWays({{0.1, 0}, {0.1, 7}, {-1, 3}}, {0.1, y});
        expectInsideBothWays({{0.1, 0}, {0.1, 7}, {1, 3}}, {0.1, y});
    }
}

TEST(Rings, crossingThemselvesAreEvenOdd) {
    const Outline bowTie = {{0, 0}, {10, 10}, {10, 0}, {0, 10}};
    expectInsideBothWays(bowTie, {1, 5});
    expectInsideBothWays(bowTie, {9, 5});
    expectInsideBothWays(bowTie, {5, 5});
    expectOutsideBothWays(bowTie, {5, 9});
    expectOutsideBothWays(bowTie, {5, 1});

    Outline twice = counterClockwiseSquare;
    twice.insert(twice.end(), counterClockwiseSquare.begin(), counterClockwiseSquare.end());
    expectOutsideBothWays(twice, {5, 5});
    expectInsideBothWays(twice, {10, 5});
    expectInsideBothWays(twice, {0, 0});
}

TEST(Rings, ofTinyOrHugeCoordinatesFollowSameRules) {
    for (const double unit : {0x1p-1074, 1e-300, 1e150, 1e200, 0x1p+1022}) {
        const Outline square = {{0, 0}, {2 * unit, 0}, {2 * unit, 2 * unit}, {0, 2 * unit}};
        expectInsideBothWays(square, {unit, unit});
        expectInsideBothWays(square, {2 * unit, unit});
        expectInsideBothWays(square, {unit, 2 * unit});
        expectOutsideBothWays(square, {unit, 3 * unit});
        expectOutsideBothWays(square, {-unit, unit});
        EXPECT_TRUE(isOutside(square, {unit, 0}));
    }
}

} // namespace vadelclip
