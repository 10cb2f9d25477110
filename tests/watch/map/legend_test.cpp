#include "watch/map/legend.hpp"

#include "support/german_messages.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

using Notes = std::vector<std::string>;

const MapLegend much{{3, 10315, 123148, 1234}, 5678, {12, 2, 3, 40}, true};
const MapLegend one{{1, 1, 1, 1}, 1, {1, 1, 1, 1}, false, true};
const MapLegend nothing{};

} // namespace

TEST(MapLegend, textsInEnglish) {
    const LegendWords words = wordsOf(much);
    EXPECT_EQ((LegendEntry{"Kept (7.7 %)", "10 315 nodes"}), words.kept);
    EXPECT_EQ((LegendEntry{"Dropped", "123 148 nodes"}), words.dropped);
    EXPECT_EQ((LegendEntry{"Boundary", "12 polygons"}), words.boundary);
    EXPECT_EQ((Notes{"40 polygons smaller than 10 pixels", "2 polygons reaching beyond the map",
                     "3 polygons with fewer than 3 vertices", "5 678 nodes outside the map",
                     "1 234 lines without a position"}),
              words.notes);
    EXPECT_EQ("in units of the coordinates", words.unit);
    EXPECT_TRUE(words.showsDensity);
}

TEST(MapLegend, textsInGerman) {
    const GermanMessages catalogue;
    const LegendWords words = wordsOf(much);
    EXPECT_EQ((LegendEntry{"Behalten (7,7 %)", "10 315 Knoten"}), words.kept);
    EXPECT_EQ((LegendEntry{"Verworfen", "123 148 Knoten"}), words.dropped);
    EXPECT_EQ((LegendEntry{"Grenze", "12 Polygone"}), words.boundary);
    EXPECT_EQ((Notes{"40 Polygone kleiner als 10 Pixel", "2 Polygone teilweise außerhalb der Karte",
                     "3 Polygone mit weniger als 3 Ecken", "5 678 Knoten außerhalb der Karte",
                     "1 234 Zeilen ohne Koordinaten"}),
              words.notes);
    EXPECT_EQ("in der Einheit der Koordinaten", words.unit);
}

TEST(MapLegend, textsForOneOfEach) {
    const LegendWords english = wordsOf(one);
    EXPECT_EQ((LegendEntry{"Kept (33.3 %)", "1 node"}), english.kept);
    EXPECT_EQ("1 polygon", english.boundary.count);
    EXPECT_EQ((Notes{"Circle: smaller than 10 pixels", "1 polygon reaching beyond the map",
                     "1 polygon with fewer than 3 vertices", "1 node outside the map", "1 line without a position"}),
              english.notes);
    const GermanMessages catalogue;
    const LegendWords german = wordsOf(one);
    EXPECT_EQ((LegendEntry{"Behalten (33,3 %)", "1 Knoten"}), german.kept);
    EXPECT_EQ("1 Polygon", german.boundary.count);
    EXPECT_EQ((Notes{"Kreis: kleiner als 10 Pixel", "1 Polygon teilweise außerhalb der Karte",
                     "1 Polygon mit weniger als 3 Ecken", "1 Knoten außerhalb der Karte", "1 Zeile ohne Koordinaten"}),
              german.notes);
}

TEST(MapLegend, hasNoShareAndNoNotesWithoutLines) {
    const LegendWords words = wordsOf(nothing);
    EXPECT_EQ((LegendEntry{"Kept", "0 nodes"}), words.kept);
    EXPECT_EQ("0 polygons", words.boundary.count);
    EXPECT_EQ(Notes{}, words.notes);
    EXPECT_FALSE(words.showsDensity);
}

TEST(MapLegend, shareIsZeroOrAllOnlyIfExact) {
    const auto nameFor = [](std::uint64_t kept, std::uint64_t dropped) {
        return wordsOf({{1, kept, dropped, 0}, 0, {}}).kept.name;
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
    MapLegend legend = much;
    legend.low = 1.25F;
    legend.high = 300.0F;
    const LegendWords density = wordsOf(legend);
    EXPECT_EQ("Nodes per pixel 1.2 300.0", density.ramp + " " + density.low + " " + density.high);
    legend.showsElevation = true;
    legend.low = -1200.4F;
    const LegendWords elevation = wordsOf(legend);
    EXPECT_EQ("Elevation of kept nodes -1200 300", elevation.ramp + " " + elevation.low + " " + elevation.high);
    legend.low = 299.91F;
    EXPECT_EQ("299.9100", wordsOf(legend).low);
    legend.counts.withoutElevation = 2;
    EXPECT_THAT(wordsOf(legend).notes, testing::Contains("2 nodes kept without elevation"));
    EXPECT_EQ("", wordsOf(one).ramp);
}

} // namespace vadelwatch
