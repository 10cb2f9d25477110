#include "watch/map/extent.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vadelwatch {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

void expectExtent(double minX, double minY, double maxX, double maxY, const MapExtent& extent) {
    EXPECT_DOUBLE_EQ(minX, extent.minX);
    EXPECT_DOUBLE_EQ(minY, extent.minY);
    EXPECT_DOUBLE_EQ(maxX, extent.maxX);
    EXPECT_DOUBLE_EQ(maxY, extent.maxY);
}

} // namespace

TEST(MapExtent, growsWithPositions) {
    MapExtent extent;
    EXPECT_TRUE(isEmpty(extent));
    includePosition(extent, {3.0, -2.0});
    EXPECT_FALSE(isEmpty(extent));
    expectExtent(3.0, -2.0, 3.0, -2.0, extent);
    includePosition(extent, {-1.0, 5.0});
    expectExtent(-1.0, -2.0, 3.0, 5.0, extent);
    EXPECT_EQ(4.0, widthOf(extent));
    EXPECT_EQ(7.0, heightOf(extent));
}

TEST(MapExtent, whatCannotBeDrawnDoesNotCount) {
    MapExtent extent;
    for (const MapPosition position : {MapPosition{1.1e300, 0.0}, {0.0, -1.1e300}, {infinity, 0.0}, {0.0, NAN}}) {
        includePosition(extent, position);
        EXPECT_TRUE(isEmpty(extent)) << position.x << " " << position.y;
    }
    includePosition(extent, {largestDrawable, -largestDrawable});
    EXPECT_FALSE(isEmpty(extent));
}

TEST(MapExtent, itsLimitsBelongToIt) {
    const MapExtent extent{0.0, 0.0, 2.0, 1.0};
    EXPECT_TRUE(holds(extent, {0.0, 0.0}));
    EXPECT_TRUE(holds(extent, {2.0, 1.0}));
    EXPECT_FALSE(holds(extent, {2.0000001, 1.0}));
    EXPECT_FALSE(holds(extent, {1.0, -0.0000001}));
    EXPECT_FALSE(holds(extent, {NAN, 0.5}));
    EXPECT_FALSE(holds(MapExtent(), {0.0, 0.0}));
}

TEST(MapFrame, isEmptyOnlyIfThereIsNothing) {
    EXPECT_TRUE(isEmpty(chooseFrame({}, {})));
    expectExtent(1, 2, 3, 4, chooseFrame({1, 2, 3, 4}, {}));
    expectExtent(1, 2, 3, 4, chooseFrame({}, {1, 2, 3, 4}));
}

TEST(MapFrame, showsPointsAndOutlinesOfLikeSize) {
    expectExtent(0, -5, 40, 10, chooseFrame({0, 0, 40, 10}, {5, -5, 15, 5}));
    expectExtent(0, -5, 40, 10, chooseFrame({5, -5, 15, 5}, {0, 0, 40, 10}));
}

TEST(MapFrame, showsTheSmallerOneWithItsSurroundingsIfTheOtherReachesMuchFurther) {
    const MapExtent small{100, 100, 110, 104};
    expectExtent(95, 95, 115, 109, chooseFrame({0, 0, 1000, 1000}, small));
    expectExtent(95, 95, 115, 109, chooseFrame(small, {0, 0, 1000, 1000}));
    // Nothing is there to see beyond the larger one.
    expectExtent(98, 95, 115, 109, chooseFrame(small, {98, 0, 1000, 1000}));
}

TEST(MapFrame, showsBothIfTheyDoNotMeet) {
    expectExtent(0, 0, 110, 1000, chooseFrame({0, 0, 50, 1000}, {100, 100, 110, 104}));
    expectExtent(0, 0, 1000, 104, chooseFrame({0, 0, 1000, 50}, {100, 100, 110, 104}));
}

TEST(MapFrame, showsBothIfOneOfThemIsASinglePosition) {
    expectExtent(0, 0, 1000, 1000, chooseFrame({5, 5, 5, 5}, {0, 0, 1000, 1000}));
}

TEST(MapMargin, isAShareOfTheLongerSide) {
    expectExtent(-4, -4, 104, 54, addMargin({0, 0, 100, 50}));
    expectExtent(-4, 46, 104, 54, addMargin({0, 50, 100, 50}));
}

TEST(MapMargin, givesASinglePositionASizeThatDoublesResolve) {
    expectExtent(4.5, 6.5, 5.5, 7.5, addMargin({5, 7, 5, 7}));
    expectExtent(1e20 - 1e11, -1e11, 1e20 + 1e11, 1e11, addMargin({1e20, 0, 1e20, 0}));
    const MapExtent close = addMargin({1e15, 0, std::nextafter(1e15, infinity), 0});
    EXPECT_GE(widthOf(close), 1e3);
    EXPECT_GE(widthOf(addMargin({0, 0, 1e-310, 0})), 9e-291);
    EXPECT_TRUE(std::isfinite(widthOf(addMargin({-1e300, -1e300, 1e300, 1e300}))));
}

TEST(MapAspect, widensTheShorterSideBothWays) {
    expectExtent(-45, 0, 55, 100, fitAspect({0, 0, 10, 100}, 1.0));
    expectExtent(0, -20, 100, 30, fitAspect({0, 0, 100, 10}, 0.5));
    expectExtent(0, 0, 100, 50, fitAspect({0, 0, 100, 50}, 0.5));
}

} // namespace vadelwatch
