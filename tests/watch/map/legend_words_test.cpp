#include "watch/map/legend_words.hpp"

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

TEST(MapLegendWords, inEnglish) {
    const LegendWords words = wordsOf(much, watchTexts("en"));
    EXPECT_EQ((LegendEntry{"Kept (7.7 %)", "10 315 nodes"}), words.kept);
    EXPECT_EQ((LegendEntry{"Dropped", "123 148 nodes"}), words.dropped);
    EXPECT_EQ((LegendEntry{"Boundary", "12 polygons"}), words.boundary);
    EXPECT_EQ(
        (Notes{"Darker: more nodes in one place", "5 678 nodes beyond the map", "1 234 lines without a position"}),
        words.notes);
    EXPECT_EQ("in units of the coordinates", words.unit);
    EXPECT_EQ('.', words.decimalPoint);
    EXPECT_TRUE(words.showsDensity);
}

TEST(MapLegendWords, inGermanWithTheNumbersOfTheSummary) {
    const LegendWords words = wordsOf(much, watchTexts("de"));
    EXPECT_EQ((LegendEntry{"Behalten (7,7 %)", "10 315 Punkte"}), words.kept);
    EXPECT_EQ((LegendEntry{"Verworfen", "123 148 Punkte"}), words.dropped);
    EXPECT_EQ((LegendEntry{"Grenze", "12 Polygone"}), words.boundary);
    EXPECT_EQ((Notes{"Dunkler: dichtere Punkte", "5 678 Punkte außerhalb der Karte", "1 234 Zeilen ohne Lage"}),
              words.notes);
    EXPECT_EQ("in Einheiten der Koordinaten", words.unit);
    EXPECT_EQ(',', words.decimalPoint);
}

TEST(MapLegendWords, oneOfEach) {
    const LegendWords english = wordsOf(one, watchTexts("en"));
    EXPECT_EQ((LegendEntry{"Kept (33.3 %)", "1 node"}), english.kept);
    EXPECT_EQ("1 polygon", english.boundary.count);
    EXPECT_EQ((Notes{"1 node beyond the map", "1 line without a position"}), english.notes);
    const LegendWords german = wordsOf(one, watchTexts("de"));
    EXPECT_EQ((LegendEntry{"Behalten (33,3 %)", "1 Punkt"}), german.kept);
    EXPECT_EQ("1 Polygon", german.boundary.count);
    EXPECT_EQ((Notes{"1 Punkt außerhalb der Karte", "1 Zeile ohne Lage"}), german.notes);
}

TEST(MapLegendWords, withoutLinesThereIsNoShareAndNothingToNote) {
    const LegendWords words = wordsOf(nothing, watchTexts("en"));
    EXPECT_EQ((LegendEntry{"Kept", "0 nodes"}), words.kept);
    EXPECT_EQ("0 polygons", words.boundary.count);
    EXPECT_EQ(Notes{}, words.notes);
    EXPECT_FALSE(words.showsDensity);
}

} // namespace vadelwatch
