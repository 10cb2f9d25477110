#include "watch/show/utf8_character.hpp"

#include <gtest/gtest.h>

namespace vadelwatch {

TEST(Utf8Character, aCharacterTakesOneColumnHoweverManyBytes) {
    EXPECT_EQ(columnsOf(""), 0U);
    EXPECT_EQ(columnsOf("Elevation"), 9U);
    EXPECT_EQ(columnsOf("Höhe"), 4U);
    EXPECT_EQ(columnsOf("█▏ 12 %"), 7U);
    EXPECT_EQ(columnsOf("\U0001F5FA"), 1U);
}

TEST(Utf8Character, theLengthIsThatOfAValidCharacter) {
    EXPECT_EQ(characterLength("a"), 1U);
    EXPECT_EQ(characterLength("\xC3\xB6rtlich"), 2U);
    EXPECT_EQ(characterLength("\xE2\x96\x88"), 3U);
    EXPECT_EQ(characterLength("\xF0\x9F\x97\xBA"), 4U);
}

TEST(Utf8Character, bytesThatAreNoCharacterHaveNoLength) {
    EXPECT_EQ(characterLength("\x1B[2J"), 0U);          // a control character
    EXPECT_EQ(characterLength("\xB6"), 0U);             // goes on with nothing
    EXPECT_EQ(characterLength("\xC3"), 0U);             // cut
    EXPECT_EQ(characterLength("\xC3z"), 0U);            // not gone on with
    EXPECT_EQ(characterLength("\xC0\xAF"), 0U);         // overlong
    EXPECT_EQ(characterLength("\xED\xA0\x80"), 0U);     // a surrogate
    EXPECT_EQ(characterLength("\xF4\x90\x80\x80"), 0U); // beyond U+10FFFF
}

} // namespace vadelwatch
