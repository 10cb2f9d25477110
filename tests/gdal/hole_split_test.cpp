#include "gdal/hole_split.hpp"

#include "gdal/hole_join.hpp"
#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

namespace vadelclip_gdal {

namespace {

const Ring square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

/// All rings, one a line.
std::string textOf(const RingsOfPolygon& polygon) {
    std::string text = vadelclip::asText(polygon.outer);
    for (const Ring& hole : polygon.holes) {
        text.append("\n").append(vadelclip::asText(hole));
    }
    return text;
}

std::string splitText(const Ring& ring) {
    return textOf(splitHoles(ring));
}

void expectUnchanged(const Ring& ring) {
    EXPECT_EQ(textOf({ring, {}}), splitText(ring));
    const Ring backwards(ring.rbegin(), ring.rend());
    EXPECT_EQ(textOf({backwards, {}}), splitText(backwards));
}

} // namespace

TEST(HoleSplit, findsHolesInBothDirectionsOfEachRing) {
    for (const Ring& outer : {square, vadelclip::reversed(square)}) {
        for (const Ring& hole : {Ring{{6, 5}, {5, 6}, {4, 5}}, Ring{{6, 5}, {4, 5}, {5, 6}}}) {
            const RingsOfPolygon read = splitHoles(joinHoles({outer, {hole}}).value());
            ASSERT_EQ(1U, read.holes.size());
            EXPECT_EQ(vadelclip::asText(hole), vadelclip::asText(read.holes[0]));
            EXPECT_EQ(5U, read.outer.size());
        }
    }
}

TEST(HoleSplit, findsNestedAndTouchingHoles) {
    // Three holes in a chain. Two more touch the third one in one point, which is the rightmost corner of all three.
    const Ring outer = {{0, 0}, {10, 0}, {10, 5}, {10, 10}, {0, 10}};
    const std::vector<Ring> holes = {{{9, 5}, {7, 6}, {7, 4}},
                                     {{6, 5}, {5, 6}, {5, 4}},
                                     {{4, 5}, {3, 6}, {3, 4}},
                                     {{4, 5}, {2, 8}, {1, 8}},
                                     {{4, 5}, {3, 9}, {2, 9}}};
    const RingsOfPolygon read = splitHoles(joinHoles({outer, holes}).value());
    ASSERT_EQ(5U, read.holes.size());
    EXPECT_EQ(vadelclip::asText(outer), vadelclip::asText(read.outer));
    // The cuts between the holes end on edges of the first two.
    EXPECT_EQ(vadelclip::asText(Ring{{9, 5}, {7, 6}, {7, 5}, {7, 4}}), vadelclip::asText(read.holes[0]));
    EXPECT_EQ(vadelclip::asText(Ring{{6, 5}, {5, 6}, {5, 5}, {5, 4}}), vadelclip::asText(read.holes[1]));
    for (std::size_t i = 2; i < 5; ++i) {
        EXPECT_EQ(vadelclip::asText(holes[i]), vadelclip::asText(read.holes[i]));
    }
}

TEST(HoleSplit, leavesOtherRingsUnchanged) {
    expectUnchanged({{0, 0}});
    expectUnchanged({{0, 0}, {1, 0}});
    expectUnchanged({{0, 0}, {1, 0}, {0, 0}});
    expectUnchanged(square);
    expectUnchanged({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}});
    // A spike, and one that is walked twice.
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {4, 5}, {10, 5}, {10, 10}, {0, 10}});
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {4, 5}, {10, 5}, {4, 5}, {10, 5}, {10, 10}, {0, 10}});
    // A sloped cut.
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {6, 4}, {5, 6}, {4, 4}, {6, 4}, {10, 5}, {10, 10}, {0, 10}});
}

TEST(HoleSplit, leavesASecondPartOutsideUnchanged) {
    // A square with a bay at its right side, and a triangle in the bay that a horizontal edge connects with the end of it.
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {6, 4}, {5, 5}, {6, 6}, {10, 5}, {10, 10}, {0, 10}});
    // The triangle is right of the square.
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {14, 5}, {15, 6}, {15, 4}, {14, 5}, {10, 5}, {10, 10}, {0, 10}});
    // The triangle is left of the square.
    expectUnchanged({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 5}, {-4, 5}, {-5, 4}, {-5, 6}, {-4, 5}, {0, 5}});
}

TEST(HoleSplit, leavesAHoleUnchangedThatGoesFurtherRightThanItsCut) {
    expectUnchanged({{0, 0}, {10, 0}, {10, 5}, {6, 5}, {4, 6}, {4, 4}, {7, 4}, {6, 5}, {10, 5}, {10, 10}, {0, 10}});
}

TEST(HoleSplit, leavesCutsUnchangedThatAreNotNested) {
    expectUnchanged({{10, 5}, {6, 5}, {5, 4}, {10, 3}, {6, 3}, {5, 2}, {6, 5}, {10, 5}, {9, 4}, {6, 3}, {10, 3}});
}

} // namespace vadelclip_gdal
