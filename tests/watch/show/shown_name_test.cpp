#include "watch/show/shown_name.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vadelwatch {

namespace {

/// @param number of a character from U+0080 to U+FFFF.
std::string inUtf8(unsigned int number) {
    const auto last = static_cast<char>(0x80U | (number & 0x3FU));
    if (number < 0x800U) {
        return {static_cast<char>(0xC0U | (number >> 6U)), last};
    }
    return {static_cast<char>(0xE0U | (number >> 12U)), static_cast<char>(0x80U | ((number >> 6U) & 0x3FU)), last};
}

} // namespace

TEST(ShownName, controlCharactersAreShownAsNumbersAndEverythingElseAsItIs) {
    EXPECT_EQ("Höhe 1/→ \\ %{0}", shownName("Höhe 1/→ \\ %{0}"));
    EXPECT_EQ("\\x1B[2J\\x0A\\x09\\x7F\\x00", shownName(std::string_view("\x1B[2J\n\t\x7F\0", 8)));
    // The second set of control characters, which some terminals obey: as UTF-8, and as bytes that are none.
    EXPECT_EQ("a\\xC2\\x9Bb\\x9Bc", shownName("a\xC2\x9B"
                                              "b\x9B"
                                              "c"));
    // The first character behind that set, a space that keeps words together.
    EXPECT_EQ("1\xC2\xA0m", shownName("1\xC2\xA0m"));
    // Continuation bytes of other characters.
    EXPECT_EQ("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B", shownName("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B"));
}

TEST(ShownName, bytesThatAreNotUtf8AreShownAsNumbers) {
    EXPECT_EQ("caf\\xE9 1", shownName("caf\xE9 1"));
    EXPECT_EQ("\\xE2\\x80", shownName("\xE2\x80"));
    // Overlong, a surrogate, beyond the last character.
    EXPECT_EQ("\\xC0\\xAF \\xED\\xA0\\x80 \\xF4\\x90\\x80\\x80", shownName("\xC0\xAF \xED\xA0\x80 \xF4\x90\x80\x80"));
}

TEST(ShownName, charactersThatTurnTextAreShownAsNumbers) {
    EXPECT_EQ("a\\xE2\\x80\\xAEzyx.txt", shownName("a\xE2\x80\xAEzyx.txt"));
    for (const unsigned int number :
         {0x061CU, 0x200EU, 0x200FU, 0x202AU, 0x202BU, 0x202CU, 0x202DU, 0x202EU, 0x2066U, 0x2067U, 0x2068U, 0x2069U}) {
        EXPECT_EQ(std::string::npos, shownName(inUtf8(number)).find(inUtf8(number))) << number;
    }
    for (const unsigned int neighbour : {0x061BU, 0x061DU, 0x200DU, 0x2010U, 0x2029U, 0x202FU, 0x2065U, 0x206AU}) {
        EXPECT_EQ(inUtf8(neighbour), shownName(inUtf8(neighbour))) << neighbour;
    }
}

TEST(ColumnsOf, countsCharactersAndNotBytes) {
    EXPECT_EQ(columnsOf(""), 0U);
    EXPECT_EQ(columnsOf("Elevation"), 9U);
    EXPECT_EQ(columnsOf("Höhe"), 4U);
    EXPECT_EQ(columnsOf("█▏ 12 %"), 7U);
    EXPECT_EQ(columnsOf("\U0001F5FA"), 1U);
    // Bytes that are not UTF-8 do not matter to the rest.
    EXPECT_EQ(columnsOf("caf\xE9"), 4U);
}

} // namespace vadelwatch
