// Every product is rounded before it is added. Each test fails if the compiler joins a product and a sum into one fused
// multiply-add, which processors such as ARM64 have and which compilers use there by default. These are all places in
// the definition of "inside" and in the index where a product meets a sum. scripts/test-arm64.sh also searches the executables
// for the instruction.
//
// No result depends on the last bit of hypot.
#include "boundary/boundary_edge.hpp"
#include "boundary/contains_point.hpp"
#include "boundary/index/boundary_index.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip {

namespace {

BoundaryEdge edgeBetween(Point2D a, Point2D b) {
    std::vector<BoundaryVertex> table;
    makePolygon(table, {a, b});
    std::vector<BoundaryEdge> edges;
    appendEdges(edges, {0, 1}, table);
    return edges.at(0);
}

/// Returns true if the distance is measured from the far end of the edge, not along its normal.
bool isMeasuredFromEnd(Point2D end, Point2D point) {
    BoundaryEdge edge = edgeBetween({0, 0}, end);
    // A normal that does not belong to the edge results in a distance that is too large.
    edge.normal = {100, 10000};
    return distanceToEdge(edge, point) < 20;
}

} // namespace

TEST(SeparateRounding, holdsForSquaredLength) {
    // Fused, the last digit is one less.
    EXPECT_EQ(0x1.3733333333334p+5, edgeBetween({0, 0}, {4.1, 4.7}).squaredLength);
    EXPECT_EQ(0x1.b400000000002p+4, edgeBetween({0, 0}, {1.8, 4.9}).squaredLength);
}

TEST(SeparateRounding, holdsForLineOffset) {
    EXPECT_EQ(0x1.3333333333334p+3, edgeBetween({39, 36}, {42, 40}).lineOffset);
    EXPECT_EQ(-0x1.99999999999c0p-1, edgeBetween({20, 28}, {23, 32}).lineOffset);
}

// The position along the edge is a quotient of two sums, and a fused sum in either is enough to move it across 1.
TEST(SeparateRounding, holdsForPositionAlongEdge) {
    EXPECT_TRUE(isMeasuredFromEnd({3.6, 1.4}, {1.7, 6.2857142857142865}));
    EXPECT_FALSE(isMeasuredFromEnd({3.9, 4.8}, {6.5, 2.6875000000000013}));
}

TEST(SeparateRounding, holdsForDivisorOfPosition) {
    EXPECT_TRUE(isMeasuredFromEnd({7.8, 6.7}, {2.8, 12.52089552238806}));
    EXPECT_FALSE(isMeasuredFromEnd({4.1, 3.1}, {7.7, -1.6612903225806435}));
}

// The two products cancel. A fused sum is the rounding error of one of them.
TEST(SeparateRounding, holdsForDistanceFromSegment) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon segment = makePolygon(table, {{0, 0}, {5, 12}});
    for (int eighths = 1; eighths <= 8; ++eighths) {
        EXPECT_TRUE(containsPoint(segment, {0.625 * eighths, 1.5 * eighths}, table)) << eighths;
    }
}

// The segment meets some cells at a corner only, if the number of columns divides its size. With a fused sum the index would not
// find it there. So far from the origin, the limits of the cells are not rounded.
TEST(SeparateRounding, holdsForCellsOfSegment) {
    constexpr double corner = 0x1p+20;
    for (int size = 1; size <= 100; ++size) {
        BoundarySet set = setOf({{{corner, corner + size}, {corner + size, corner}}});
        const BoundaryIndex index(set);
        for (int x = 0; x <= size; ++x) {
            EXPECT_TRUE(index.anyContains({corner + x, corner + size - x})) << x << " of " << size;
        }
    }
}

} // namespace vadelclip
