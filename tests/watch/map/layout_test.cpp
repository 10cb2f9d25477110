#include "watch/map/layout.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace vadelwatch {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

void expectExtent(double minX, double minY, double maxX, double maxY, const MapExtent& extent) {
    EXPECT_DOUBLE_EQ(minX, extent.minX);
    EXPECT_DOUBLE_EQ(minY, extent.minY);
    EXPECT_DOUBLE_EQ(maxX, extent.maxX);
    EXPECT_DOUBLE_EQ(maxY, extent.maxY);
}

/// Every letter is 12 pixels wide.
double widthOfLabel(const std::string& label) {
    return 12.0 * static_cast<double>(label.size());
}

/// Returns the minimum distance between two neighbouring labels of x, in pixels.
double leastLabelGap(const MapView& view) {
    double least = view.plot.width;
    for (std::size_t i = 1; i < view.xTicks.size(); ++i) {
        const double distance = (view.xTicks[i].value - view.xTicks[i - 1].value) * scaleOf(view);
        const double halves = (widthOfLabel(view.xTicks[i].label) + widthOfLabel(view.xTicks[i - 1].label)) / 2.0;
        least = std::min(least, distance - halves);
    }
    return least;
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

TEST(MapExtent, ignoresUndrawablePositions) {
    MapExtent extent;
    for (const MapPosition position : {MapPosition{1.1e300, 0.0}, {0.0, -1.1e300}, {infinity, 0.0}, {0.0, NAN}}) {
        includePosition(extent, position);
        EXPECT_TRUE(isEmpty(extent)) << position.x << " " << position.y;
    }
    includePosition(extent, {largestDrawable, -largestDrawable});
    EXPECT_FALSE(isEmpty(extent));
}

TEST(MapExtent, includesItsLimits) {
    const MapExtent extent{0.0, 0.0, 2.0, 1.0};
    EXPECT_TRUE(holds(extent, {0.0, 0.0}));
    EXPECT_TRUE(holds(extent, {2.0, 1.0}));
    EXPECT_FALSE(holds(extent, {2.0000001, 1.0}));
    EXPECT_FALSE(holds(extent, {1.0, -0.0000001}));
    EXPECT_FALSE(holds(extent, {NAN, 0.5}));
    EXPECT_FALSE(holds(MapExtent(), {0.0, 0.0}));
}

TEST(MapFrame, isEmptyOnlyWithoutPositions) {
    EXPECT_TRUE(isEmpty(chooseFrame({}, {})));
    expectExtent(1, 2, 3, 4, chooseFrame({1, 2, 3, 4}, {}));
    expectExtent(1, 2, 3, 4, chooseFrame({}, {1, 2, 3, 4}));
}

TEST(MapFrame, showsPointsAndOutlinesOfSimilarSize) {
    expectExtent(0, -5, 40, 10, chooseFrame({0, 0, 40, 10}, {5, -5, 15, 5}));
    expectExtent(0, -5, 40, 10, chooseFrame({5, -5, 15, 5}, {0, 0, 40, 10}));
}

TEST(MapFrame, showsMuchSmallerOneWithItsSurroundings) {
    const MapExtent small{100, 100, 110, 104};
    expectExtent(95, 95, 115, 109, chooseFrame({0, 0, 1000, 1000}, small));
    expectExtent(95, 95, 115, 109, chooseFrame(small, {0, 0, 1000, 1000}));
    // The frame does not exceed the larger one.
    expectExtent(98, 95, 115, 109, chooseFrame(small, {98, 0, 1000, 1000}));
}

TEST(MapFrame, showsBothWithoutOverlap) {
    expectExtent(0, 0, 110, 1000, chooseFrame({0, 0, 50, 1000}, {100, 100, 110, 104}));
    expectExtent(0, 0, 1000, 104, chooseFrame({0, 0, 1000, 50}, {100, 100, 110, 104}));
}

TEST(MapFrame, showsBothIfOneIsSinglePosition) {
    expectExtent(0, 0, 1000, 1000, chooseFrame({5, 5, 5, 5}, {0, 0, 1000, 1000}));
}

TEST(MapMargin, isShareOfLongerSide) {
    expectExtent(-4, -4, 104, 54, addMargin({0, 0, 100, 50}));
    expectExtent(-4, 46, 104, 54, addMargin({0, 50, 100, 50}));
}

TEST(MapMargin, makesSinglePositionResolvable) {
    expectExtent(4.5, 6.5, 5.5, 7.5, addMargin({5, 7, 5, 7}));
    expectExtent(1e20 - 1e11, -1e11, 1e20 + 1e11, 1e11, addMargin({1e20, 0, 1e20, 0}));
    const MapExtent close = addMargin({1e15, 0, std::nextafter(1e15, infinity), 0});
    EXPECT_GE(widthOf(close), 1e3);
    EXPECT_GE(widthOf(addMargin({0, 0, 1e-310, 0})), 9e-291);
    EXPECT_TRUE(std::isfinite(widthOf(addMargin({-1e300, -1e300, 1e300, 1e300}))));
}

TEST(MapAspect, widensShorterSideBothWays) {
    expectExtent(-45, 0, 55, 100, fitAspect({0, 0, 10, 100}, 1.0));
    expectExtent(0, -20, 100, 30, fitAspect({0, 0, 100, 10}, 0.5));
    expectExtent(0, 0, 100, 50, fitAspect({0, 0, 100, 50}, 0.5));
}

TEST(MapView, fitsFramesOfAllShapesAndSizes) {
    for (const MapExtent& frame : {MapExtent{0, 0, 1, 1},
                                   {382200, 6354200, 382600, 6354700},
                                   {-180, -60, 180, 80},
                                   {0, 0, 1, 1000},
                                   {0, 0, 1000, 1},
                                   {-1e300, -1e300, 1e300, 1e300},
                                   {0, 0, 1e-290, 1e-290},
                                   {1e15, 5e14, 1e15 + 1e3, 5e14 + 1},
                                   {149.123456, -33.7, 149.1235, -33.69995}}) {
        const MapView view = layOutMap(frame, widthOfLabel);
        const std::string shape = std::to_string(widthOf(frame)) + " x " + std::to_string(heightOf(frame));
        EXPECT_EQ(1600, view.pictureWidth) << shape;
        EXPECT_GE(view.pictureHeight, 600) << shape;
        EXPECT_LE(view.pictureHeight, 1600) << shape;
        // The frame is visible, and both axes have the same scale.
        EXPECT_LE(view.shown.minX, frame.minX) << shape;
        EXPECT_LE(view.shown.minY, frame.minY) << shape;
        EXPECT_GE(view.shown.maxX, frame.maxX) << shape;
        EXPECT_GE(view.shown.maxY, frame.maxY) << shape;
        EXPECT_NEAR(view.plot.height, heightOf(view.shown) * scaleOf(view), 0.1) << shape;
        EXPECT_EQ(std::round(view.plot.left), view.plot.left) << shape;
        EXPECT_EQ(std::round(view.plot.width), view.plot.width) << shape;
        EXPECT_GE(view.xTicks.size(), 2U) << shape;
        EXPECT_LE(view.xTicks.size(), 14U) << shape;
        EXPECT_GE(view.yTicks.size(), 4U) << shape;
        EXPECT_LE(view.yTicks.size(), 17U) << shape;
        EXPECT_GE(leastLabelGap(view), 30.0) << shape;
        for (const MapTick& tick : view.yTicks) {
            EXPECT_GE(view.plot.left - 50.0, widthOfLabel(tick.label)) << shape << " " << tick.label;
        }
    }
}

TEST(MapView, convertsPositionsToPixels) {
    const MapView view = layOutMap({0, 0, 100, 100}, widthOfLabel);
    const PixelPosition corner = toPixel(view, {view.shown.minX, view.shown.maxY});
    EXPECT_NEAR(view.plot.left, corner.x, 1e-9);
    EXPECT_NEAR(view.plot.top, corner.y, 1e-9);
    const PixelPosition opposite = toPixel(view, {view.shown.maxX, view.shown.minY});
    EXPECT_NEAR(view.plot.left + view.plot.width, opposite.x, 1e-9);
    EXPECT_NEAR(view.plot.top + view.plot.height, opposite.y, 1e-9);
}

TEST(MapView, stopsAtLabelsTooWideForTwo) {
    const MapView view = layOutMap({3, 3, 97, 97}, [](const std::string&) { return 400.0; });
    EXPECT_LT(view.xTicks.size(), 2U);
    EXPECT_GE(view.yTicks.size(), 4U);
}

} // namespace vadelwatch
