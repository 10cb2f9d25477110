#include "watch/map/legend.hpp"

#include "support/german_messages.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

using Texts = std::vector<std::string>;

/// Returns the texts of the legend from top to bottom, without those of the scale bar.
Texts textsOf(const MapLegend& legend) {
    MapCanvas canvas(PictureFormat::svg, 1600, 900);
    drawLegend(canvas, layOutMap({0, 0, 10, 10}, [](const std::string&) { return 50.0; }), legend);
    const std::string picture = canvas.finish();
    pugi::xml_document document;
    EXPECT_TRUE(document.load_buffer(picture.data(), picture.size()));
    Texts texts;
    for (const pugi::xml_node& text : document.child("svg").children("text")) {
        texts.emplace_back(text.text().get());
    }
    EXPECT_EQ("0", texts.at(texts.size() - 3));
    texts.resize(texts.size() - 3);
    return texts;
}

const MapLegend much{{10315, 123148, 1234}, 5678, {12, 2, 3, 40}, true};
const MapLegend one{{1, 1, 1}, 1, {1, 1, 1, 1}, false, true};

} // namespace

TEST(MapLegend, textsInEnglish) {
    EXPECT_EQ((Texts{"Kept (7.7 %)", "10 315 nodes", "Dropped", "123 148 nodes", "Boundary", "12 polygons",
                     "Nodes per pixel", "0.0", "0.0", "40 polygons smaller than 10 pixels",
                     "2 polygons reaching beyond the map", "3 polygons with fewer than 3 vertices",
                     "5 678 nodes outside the map", "1 234 lines without a position"}),
              textsOf(much));
    EXPECT_EQ((Texts{"Kept (33.3 %)", "1 node", "Dropped", "1 node", "Boundary", "1 polygon",
                     "Circle: smaller than 10 pixels", "1 polygon reaching beyond the map",
                     "1 polygon with fewer than 3 vertices", "1 node outside the map", "1 line without a position"}),
              textsOf(one));
}

TEST(MapLegend, textsInGerman) {
    const GermanMessages catalogue;
    EXPECT_EQ((Texts{"Behalten (7,7 %)", "10 315 Knoten", "Verworfen", "123 148 Knoten", "Grenze", "12 Polygone",
                     "Knoten pro Pixel", "0,0", "0,0", "40 Polygone kleiner als 10 Pixel",
                     "2 Polygone teilweise außerhalb der Karte", "3 Polygone mit weniger als 3 Ecken",
                     "5 678 Knoten außerhalb der Karte", "1 234 Zeilen ohne Koordinaten"}),
              textsOf(much));
    EXPECT_EQ((Texts{"Behalten (33,3 %)", "1 Knoten", "Verworfen", "1 Knoten", "Grenze", "1 Polygon",
                     "Kreis: kleiner als 10 Pixel", "1 Polygon teilweise außerhalb der Karte",
                     "1 Polygon mit weniger als 3 Ecken", "1 Knoten außerhalb der Karte", "1 Zeile ohne Koordinaten"}),
              textsOf(one));
}

TEST(MapLegend, hasNoShareAndNoNotesWithoutLines) {
    EXPECT_EQ((Texts{"Kept", "0 nodes", "Dropped", "0 nodes", "Boundary", "0 polygons"}), textsOf({}));
}

TEST(MapLegend, shareIsZeroOrAllOnlyIfExact) {
    const auto nameFor = [](std::uint64_t kept, std::uint64_t dropped) {
        return textsOf({{kept, dropped, 0}, 0, {}}).front();
    };
    EXPECT_EQ("Kept (0.0 %)", nameFor(0, 5));
    EXPECT_EQ("Kept (<0.1 %)", nameFor(1, 9999));
    EXPECT_EQ("Kept (0.1 %)", nameFor(1, 999));
    EXPECT_EQ("Kept (99.9 %)", nameFor(999, 1));
    EXPECT_EQ("Kept (>99.9 %)", nameFor(9995, 5));
    EXPECT_EQ("Kept (100.0 %)", nameFor(5, 0));
    const GermanMessages catalogue;
    EXPECT_EQ("Behalten (<0,1 %)", nameFor(1, 9999));
}

TEST(MapLegend, rampHasNumbersOfDensityOrElevation) {
    const auto rampOf = [](const MapLegend& legend) {
        const Texts texts = textsOf(legend);
        return texts.at(6) + " " + texts.at(7) + " " + texts.at(8);
    };
    MapLegend legend = much;
    legend.low = 1.25F;
    legend.high = 300.0F;
    EXPECT_EQ("Nodes per pixel 1.2 300.0", rampOf(legend));
    legend.showsElevation = true;
    legend.low = -1200.4F;
    EXPECT_EQ("Elevation of kept nodes -1200 300", rampOf(legend));
    legend.low = 299.91F;
    EXPECT_EQ("Elevation of kept nodes 299.9100 300.0000", rampOf(legend));
    legend.counts.withoutElevation = 2;
    EXPECT_THAT(textsOf(legend), testing::Contains("2 nodes kept without elevation"));
}

TEST(MapLegend, fitsIntoSmallestPicture) {
    const MapView view = layOutMap({0, 0, 10, 10}, [](const std::string&) { return 50.0; }, {800, 600});
    MapLegend legend = much;
    legend.showsElevation = true;
    legend.counts.withoutElevation = 27217;
    MapCanvas canvas(PictureFormat::svg, 800, 600);
    drawLegend(canvas, view, legend);
    const std::string picture = canvas.finish();
    pugi::xml_document document;
    ASSERT_TRUE(document.load_buffer(picture.data(), picture.size()));
    for (const pugi::xml_node& text : document.child("svg").children("text")) {
        EXPECT_LT(text.attribute("y").as_double(), 595.0) << text.text().get();
    }
}

} // namespace vadelwatch
