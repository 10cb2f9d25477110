#include "watch/map/outline_layer.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace vadelwatch {

namespace {

std::string describe(const MapOutlines& outlines) {
    std::ostringstream text;
    for (const std::vector<MapPosition>& outline : outlines) {
        text << "[";
        for (const MapPosition& vertex : outline) {
            text << " " << vertex.x << "," << vertex.y;
        }
        text << " ]";
    }
    return text.str();
}

const std::vector<MapPosition> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};

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
    return canvas.finish();
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

TEST(MapOutlineLayer, drawsNarrowPolygonThinner) {
    const MapView view = viewOfHundred();
    const auto widthOfLine = [&view](const MapOutlines& outlines) {
        const std::string picture = pictureOf([&](MapCanvas& canvas) { drawOutlines(canvas, view, outlines, 1.0); });
        const std::size_t at = picture.find("stroke-width:") + 13;
        return picture.substr(at, picture.find(';', at) - at);
    };
    const double pixel = 1.0 / scaleOf(view);
    EXPECT_EQ("1", widthOfLine({{{0, 0}, {100, 0}, {100, 7.0 * pixel}, {0, 7.0 * pixel}}}));
    EXPECT_EQ("0.6", widthOfLine({{{0, 0}, {100, 0}, {100, 5.0 * pixel}, {0, 5.0 * pixel}}}));
    EXPECT_EQ("1", widthOfLine({{{0, 0}, {100, 0}}}));
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
    const auto marks = [&](const MapOutlines& outlines) {
        return markSmallOutlines(canvas, view, outlines, countOutlines(outlines, view));
    };
    EXPECT_FALSE(marks({squareAt(10, 10, 50)}));
    EXPECT_TRUE(marks(MapOutlines(30, squareAt(10, 10, 0.1))));
    EXPECT_FALSE(marks(MapOutlines(31, squareAt(10, 10, 0.1))));
}

TEST(MapOutlineLayer, drawsOutlinesTranslucent) {
    const std::string picture =
        pictureOf([](MapCanvas& canvas) { drawOutlines(canvas, viewOfHundred(), {squareAt(10, 10, 50)}, 1.4); });
    EXPECT_NE(std::string::npos, picture.find("stroke-opacity:0.8;"));
}

TEST(MapOutlines, closesOutlineInWindow) {
    EXPECT_EQ("[ 0,0 10,0 10,10 0,10 0,0 ]", describe(clipOutline(square, {-1, -1, 11, 11})));
    EXPECT_EQ("[ 0,0 10,0 0,0 ]", describe(clipOutline({{0, 0}, {10, 0}}, {-1, -1, 11, 11})));
    EXPECT_EQ("[ 3,3 3,3 ]", describe(clipOutline({{3, 3}}, {-1, -1, 11, 11})));
    EXPECT_EQ("", describe(clipOutline({}, {-1, -1, 11, 11})));
}

TEST(MapOutlines, clipsOutlineToWindow) {
    EXPECT_EQ("[ 5,0 10,0 10,10 5,10 ]", describe(clipOutline(square, {5, -1, 11, 11})));
    EXPECT_EQ("[ 2,0 4,0 ][ 4,10 2,10 ]", describe(clipOutline(square, {2, -5, 4, 15})));
    EXPECT_EQ("", describe(clipOutline(square, {2, 2, 8, 8})));
    EXPECT_EQ("", describe(clipOutline(square, {20, 20, 30, 30})));
    EXPECT_EQ("[ 0,5 5,10 ]", describe(clipOutline({{-5, 0}, {10, 15}, {-20, 30}}, {0, 0, 10, 10})));
    EXPECT_EQ("[ 3,5 3,10 ][ 3,10 3,5 ]", describe(clipOutline({{3, 5}, {3, 15}}, {0, 0, 10, 10})));
    EXPECT_EQ("[ -1,0 1,0 ][ 1,0 -1,0 ]", describe(clipOutline({{-1e9, 0}, {1e9, 0}}, {-1, -1, 1, 1})));
}

TEST(MapOutlines, clipsHugeEdgesIntoWindow) {
    const MapExtent window{-1, -1, 2, 2};
    for (const double reach : {1e3, 1e17, 1e150, 1e300}) {
        const MapOutlines lines = clipOutline({{-reach, -reach}, {reach, reach}, {0.5, reach}, {-reach, 0.3}}, window);
        EXPECT_FALSE(lines.empty()) << reach;
        for (const std::vector<MapPosition>& line : lines) {
            for (const MapPosition& position : line) {
                EXPECT_TRUE(holds(window, position)) << reach << ": " << position.x << " " << position.y;
            }
        }
    }
}

} // namespace vadelwatch
