#include "watch/map/outline_layer.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

/// A map of 0 to 100 in both directions.
MapView viewOfHundred() {
    return layOutMap({0, 0, 100, 100}, [](const std::string&) { return 50.0; });
}

std::vector<MapPosition> squareAt(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

/// Returns the picture after a drawing.
template <typename Draw>
std::string pictureOf(Draw draw) {
    MapCanvas canvas(PictureFormat::svg, 1600, 1600);
    draw(canvas);
    std::string picture;
    EXPECT_EQ("", canvas.finish(picture));
    return picture;
}

} // namespace

TEST(MapOutlineLayer, countsOutlinesForLegend) {
    const MapOutlines outlines{squareAt(10, 10, 50),  squareAt(90, 90, 50), squareAt(500, 500, 1),
                               squareAt(50, 50, 0.1), {{20, 20}},           {{20, 20}, {80, 80}}};
    const OutlineCounts counts = countOutlines(outlines, viewOfHundred());
    EXPECT_EQ(6U, counts.all);
    EXPECT_EQ(2U, counts.beyond);
    EXPECT_EQ(2U, counts.tooShort);
    EXPECT_EQ(2U, counts.small);
}

TEST(MapOutlineLayer, marksOnlySmallExtentsInMap) {
    const MapView view = viewOfHundred();
    MapCanvas canvas(PictureFormat::png, 1600, 1600);
    EXPECT_TRUE(drawMarker(canvas, view, {5, 5, 5.1, 5.2}, outlineColour, "a"));
    EXPECT_TRUE(drawMarker(canvas, view, {95, 95, 95, 95}, outlineColour, "a"));
    EXPECT_FALSE(drawMarker(canvas, view, {5, 5, 5.1, 20}, outlineColour, "a"));
    EXPECT_FALSE(drawMarker(canvas, view, {500, 500, 500, 500}, outlineColour, "a"));
    EXPECT_FALSE(drawMarker(canvas, view, {}, outlineColour, "a"));
}

TEST(MapOutlineLayer, marksSmallOutlinesUnlessThereAreMany) {
    const MapView view = viewOfHundred();
    MapCanvas canvas(PictureFormat::png, 1600, 1600);
    EXPECT_FALSE(markSmallOutlines(canvas, view, {squareAt(10, 10, 50)}));
    EXPECT_TRUE(markSmallOutlines(canvas, view, MapOutlines(30, squareAt(10, 10, 0.1))));
    EXPECT_FALSE(markSmallOutlines(canvas, view, MapOutlines(31, squareAt(10, 10, 0.1))));
}

TEST(MapOutlineLayer, drawsOutlinesTranslucent) {
    const std::string picture =
        pictureOf([](MapCanvas& canvas) { drawOutlines(canvas, viewOfHundred(), {squareAt(10, 10, 50)}, 1.4); });
    EXPECT_NE(std::string::npos, picture.find("stroke-opacity:0.8;"));
}

} // namespace vadelwatch
