#include "watch/shown_name.hpp"

#include <gtest/gtest.h>

TEST(ShownName, controlCharactersAreShownAsNumbersAndEverythingElseAsItIs) {
    EXPECT_EQ("Höhe 1/→ \\ %{0}", shownName("Höhe 1/→ \\ %{0}"));
    EXPECT_EQ("\\x1B[2J\\x0A\\x09\\x7F\\x00", shownName(std::string_view("\x1B[2J\n\t\x7F\0", 8)));
    // The second set of control characters, which some terminals obey: as UTF-8, and as bytes that are none.
    EXPECT_EQ("a\\xC2\\x9Bb\\x9Bc", shownName("a\xC2\x9B"
                                              "b\x9B"
                                              "c"));
    // Continuation bytes of other characters, and bytes of older character sets.
    EXPECT_EQ("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B caf\xE9",
              shownName("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B caf\xE9"));
    EXPECT_EQ("\xE2\\x80", shownName("\xE2\x80"));
}
