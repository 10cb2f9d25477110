#include "watch/show/watch_texts.hpp"

#include <gtest/gtest.h>

namespace vadelwatch {

TEST(WatchTexts, germanWhereTheToolSpeaksGerman) {
    const WatchTexts& texts = watchTexts(std::nullopt);
    EXPECT_STREQ("Zeit", texts.time);
    for (const char* const language : {"de", "DE", "De", "dE", "de_AT", "de-AT", "de_at", "DE_A", "de-Latn", "de.",
                                       "de.-", "de_AT.", "de.utf8@x", "de_AT.UTF-8@euro", "de.u-t-f_8@"}) {
        EXPECT_EQ(&texts, &watchTexts(language)) << language;
    }
    for (const char* const language :
         {"",        "en",           "EN",  "fr",      "d",       "ge",       "dede",
          "xde",     "deu",          "den", "de1",     "de ",     " de",      "de+x",
          "da",      "de_{",         "de_", "de-",     "de_1",    "de_A1",    "de__AT",
          "de_AT_x", "de_\xC3\x84T", "de@", "de@euro", "de_AT@x", "de.UTF-8", "de.latin1@x",
          "de.@x",   "de_.UTF-8@x",  "@",   "_",       "."}) {
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

} // namespace vadelwatch
