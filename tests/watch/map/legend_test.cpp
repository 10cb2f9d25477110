#include "watch/map/legend.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

using Notes = std::vector<std::string>;

const MapLegend much{{3, 10315, 123148, 1234}, 5678, 12, true};
const MapLegend one{{1, 1, 1, 1}, 1, 1, false};
const MapLegend nothing{};

} // namespace

TEST(MapLegend, textsInEnglish) {
    const LegendWords words = wordsOf(much);
    EXPECT_EQ((LegendEntry{"Kept (7.7 %)", "10 315 nodes"}), words.kept);
    EXPECT_EQ((LegendEntry{"Dropped", "123 148 nodes"}), words.dropped);
    EXPECT_EQ((LegendEntry{"Boundary", "12 polygons"}), words.boundary);
    EXPECT_EQ(
        (Notes{"Darker: more nodes in one place", "5 678 nodes outside the map", "1 234 lines without a position"}),
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
    EXPECT_EQ(
        (Notes{"Dunkler: Knoten liegen dichter", "5 678 Knoten außerhalb der Karte", "1 234 Zeilen ohne Koordinaten"}),
        words.notes);
    EXPECT_EQ("in der Einheit der Koordinaten", words.unit);
}

TEST(MapLegend, textsForOneOfEach) {
    const LegendWords english = wordsOf(one);
    EXPECT_EQ((LegendEntry{"Kept (33.3 %)", "1 node"}), english.kept);
    EXPECT_EQ("1 polygon", english.boundary.count);
    EXPECT_EQ((Notes{"1 node outside the map", "1 line without a position"}), english.notes);
    const GermanMessages catalogue;
    const LegendWords german = wordsOf(one);
    EXPECT_EQ((LegendEntry{"Behalten (33,3 %)", "1 Knoten"}), german.kept);
    EXPECT_EQ("1 Polygon", german.boundary.count);
    EXPECT_EQ((Notes{"1 Knoten außerhalb der Karte", "1 Zeile ohne Koordinaten"}), german.notes);
}

TEST(MapLegend, hasNoShareAndNoNotesWithoutLines) {
    const LegendWords words = wordsOf(nothing);
    EXPECT_EQ((LegendEntry{"Kept", "0 nodes"}), words.kept);
    EXPECT_EQ("0 polygons", words.boundary.count);
    EXPECT_EQ(Notes{}, words.notes);
    EXPECT_FALSE(words.showsDensity);
}

} // namespace vadelwatch
