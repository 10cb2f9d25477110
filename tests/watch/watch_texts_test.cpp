#include "watch/watch_texts.hpp"

#include <gtest/gtest.h>

TEST(WatchTexts, germanWhereTheToolSpeaksGerman) {
    const WatchTexts& german = watchTexts(std::nullopt);
    EXPECT_STREQ("Zeit", german.time);
    for (const char* const language : {"de", "DE", "de_DE", "de_AT", "de@x"}) {
        EXPECT_EQ(&german, &watchTexts(language)) << language;
    }
    for (const char* const language : {"", "en", "EN", "fr", "d", "den", "dede", "xde"}) {
        EXPECT_STREQ("Time", watchTexts(language).time) << language;
    }
}

TEST(GroupedNumber, groupsOfThree) {
    EXPECT_EQ("0", groupedNumber(0));
    EXPECT_EQ("999", groupedNumber(999));
    EXPECT_EQ("1 000", groupedNumber(1000));
    EXPECT_EQ("12 345 678", groupedNumber(12345678));
    EXPECT_EQ("18 446 744 073 709 551 615", groupedNumber(18446744073709551615ULL));
}

TEST(DecimalNumber, hasTheSignOfTheLanguage) {
    EXPECT_EQ("7.7", decimalNumber(7.73, 1, watchTexts("en")));
    EXPECT_EQ("7,7", decimalNumber(7.73, 1, watchTexts("de")));
    EXPECT_EQ("8", decimalNumber(7.73, 0, watchTexts("de")));
}

TEST(FilledIn, namesAreShownWithoutTheirControlCharacters) {
    EXPECT_EQ("a\\x1Bb and {1}", filledIn("{0} and {1}", {"a\x1B"
                                                          "b",
                                                          "{1}"}));
}
