#include "boundary/boundary_set.hpp"

#include "support/boundary_support.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vadelclip {

TEST(BoundingBox, isExactMinimumAndMaximum) {
    struct Case {
        Outline outline;
        BoundingBox box;
    };
    const double least = std::numeric_limits<double>::denorm_min();
    const double greatest = std::numeric_limits<double>::max();
    const std::vector<Case> cases = {
        {{{3, 4}}, {3, 4, 3, 4}},
        {{{3, 4}, {-1, 9}}, {-1, 4, 3, 9}},
        {counterClockwiseSquare, {0, 0, 10, 10}},
        {{{1, 4}, {2, 1}, {5, 2}, {3, 6}}, {1, 1, 5, 6}},
        {{{-5, -4}, {-2, -1}, {-3, -7}}, {-5, -7, -2, -1}},
        {{{0.1, 0.3}, {0x1.999999999999bp-4, 0x1.3333333333332p-2}},
         {0.1, 0x1.3333333333332p-2, 0x1.999999999999bp-4, 0.3}},
        {{{least, -least}, {-least, least}}, {-least, -least, least, least}},
        {{{-greatest, greatest}, {greatest, -greatest}}, {-greatest, -greatest, greatest, greatest}},
    };
    for (const Case& testCase : cases) {
        for (const Closing closing : allClosings) {
            for (std::size_t first = 0; first < testCase.outline.size(); ++first) {
                std::vector<BoundaryVertex> table(2);
                const Outline outline = startingAt(testCase.outline, first);
                EXPECT_EQ(boxText(testCase.box), boxText(makePolygon(table, outline, closing).boundingBox))
                    << asText(outline);
            }
        }
    }
}

TEST(BoundingBox, replacesFormerBox) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, {{3, 4}, {5, 6}});
    polygon.boundingBox = {-100, -100, 100, 100};
    computeBoundingBox(polygon, table);
    EXPECT_EQ(boxText({3, 4, 5, 6}), boxText(polygon.boundingBox));
}

// The two zeros are equal. Of equal coordinates, the box keeps the first.
TEST(BoundingBox, hasZeroOfFirstVertex) {
    for (const double first : {0.0, -0.0}) {
        std::vector<BoundaryVertex> table;
        const BoundaryPolygon polygon = makePolygon(table, {{first, first}, {-first, -first}});
        EXPECT_EQ(boxText({first, first, first, first}), boxText(polygon.boundingBox));
    }
}

TEST(BoundingBox, isUnchangedWithoutVertices) {
    BoundaryPolygon fresh;
    computeBoundingBox(fresh, {});
    EXPECT_EQ(asText(BoundaryPolygon()), asText(fresh));

    BoundaryPolygon polygon;
    polygon.boundingBox = {1, 2, 3, 4};
    computeBoundingBox(polygon, {});
    EXPECT_EQ(boxText({1, 2, 3, 4}), boxText(polygon.boundingBox));
}

TEST(BoundingBox, isSeparateForEachChild) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon = makePolygon(table, counterClockwiseSquare);
    polygon.childPolygons = {makePolygon(table, {{-2, 3}, {4, 20}}), makePolygon(table, {{5, 5}})};
    polygon.childPolygons[0].childPolygons = {makePolygon(table, {{30, 40}, {31, 39}})};
    polygon.boundingBox = {};
    polygon.childPolygons[0].boundingBox = {};
    polygon.childPolygons[0].childPolygons[0].boundingBox = {};
    polygon.childPolygons[1].boundingBox = {};

    computeBoundingBox(polygon, table);

    EXPECT_EQ(boxText({0, 0, 10, 10}), boxText(polygon.boundingBox));
    EXPECT_EQ(boxText({-2, 3, 4, 20}), boxText(polygon.childPolygons[0].boundingBox));
    EXPECT_EQ(boxText({30, 39, 31, 40}), boxText(polygon.childPolygons[0].childPolygons[0].boundingBox));
    EXPECT_EQ(boxText({5, 5, 5, 5}), boxText(polygon.childPolygons[1].boundingBox));
}

TEST(BoundingBox, isComputedForChildrenOfEmptyPolygon) {
    std::vector<BoundaryVertex> table;
    BoundaryPolygon polygon;
    polygon.boundingBox = {1, 2, 3, 4};
    polygon.childPolygons = {makePolygon(table, counterClockwiseSquare)};
    polygon.childPolygons[0].boundingBox = {};
    computeBoundingBox(polygon, table);
    EXPECT_EQ(boxText({1, 2, 3, 4}), boxText(polygon.boundingBox));
    EXPECT_EQ(boxText({0, 0, 10, 10}), boxText(polygon.childPolygons[0].boundingBox));
}

} // namespace vadelclip
