#include "watch/map/view.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace vadelwatch {

namespace {

/// Every letter is 12 pixels wide.
double widthOfLabel(const std::string& label) {
    return 12.0 * static_cast<double>(label.size());
}

/// The least distance of two neighbouring labels of x, in pixels.
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

TEST(MapView, framesOfAllShapesAndSizes) {
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
        // The frame is seen, and both axes have one scale.
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

TEST(MapView, positionsInPixels) {
    const MapView view = layOutMap({0, 0, 100, 100}, widthOfLabel);
    const PixelPosition corner = toPixel(view, {view.shown.minX, view.shown.maxY});
    EXPECT_NEAR(view.plot.left, corner.x, 1e-9);
    EXPECT_NEAR(view.plot.top, corner.y, 1e-9);
    const PixelPosition opposite = toPixel(view, {view.shown.maxX, view.shown.minY});
    EXPECT_NEAR(view.plot.left + view.plot.width, opposite.x, 1e-9);
    EXPECT_NEAR(view.plot.top + view.plot.height, opposite.y, 1e-9);
}

TEST(MapView, labelsThatLeaveNoRoomForASecondOneEndTheSearchForAStep) {
    const MapView view = layOutMap(
        {3, 3, 97, 97}, [](const std::string&) { return 400.0; }, '.');
    EXPECT_LT(view.xTicks.size(), 2U);
    EXPECT_GE(view.yTicks.size(), 4U);
}

} // namespace vadelwatch
