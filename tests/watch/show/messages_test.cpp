#include "watch/show/messages.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <locale>
#include <optional>
#include <string>

namespace vadelwatch {

namespace {

/// Returns a translated message after the set-up for a language. Leaves the classic locale.
std::string messageIn(const std::optional<std::string>& language) {
    vadelclip::setUpCompanionMessages(language, "vadelwatch");
    std::string message = translateMessage("Files written");
    std::locale::global(std::locale::classic());
    return message;
}

/// @param number of a character from U+0080 to U+FFFF.
std::string inUtf8(unsigned int number) {
    const auto last = static_cast<char>(0x80U | (number & 0x3FU));
    if (number < 0x800U) {
        return {static_cast<char>(0xC0U | (number >> 6U)), last};
    }
    return {static_cast<char>(0xE0U | (number >> 12U)), static_cast<char>(0x80U | ((number >> 6U) & 0x3FU)), last};
}

} // namespace

TEST(WatchMessages, areGermanByDefaultOrWithGermanTool) {
    EXPECT_EQ("Dateien geschrieben", messageIn(std::nullopt));
    for (const char* const language : {"de", "DE", "De", "dE", "de_AT", "de-AT", "de_at", "DE_A", "de-Latn", "de.",
                                       "de.-", "de_AT.", "de.utf8@x", "de_AT.UTF-8@euro", "de.u-t-f_8@"}) {
        EXPECT_EQ("Dateien geschrieben", messageIn(language)) << language;
    }
}

TEST(WatchMessages, areEnglishForAnyOtherLanguage) {
    for (const char* const language :
         {"",        "en",           "EN",  "fr",      "d",       "ge",       "dede",
          "xde",     "deu",          "den", "de1",     "de ",     " de",      "de+x",
          "da",      "de_{",         "de_", "de-",     "de_1",    "de_A1",    "de__AT",
          "de_AT_x", "de_\xC3\x84T", "de@", "de@euro", "de_AT@x", "de.UTF-8", "de.latin1@x",
          "de.@x",   "de_.UTF-8@x",  "@",   "_",       ".",       "\xFF\xFE", "abcdefghijkl"}) {
        EXPECT_EQ("Files written", messageIn(language)) << language;
    }
}

TEST(WatchMessages, escapeControlCharactersOfTheirValues) {
    EXPECT_EQ("a\\x1Bb and {1}", formatMessage("{0} and {1}",
                                               "a\x1B"
                                               "b",
                                               "{1}"));
}

TEST(ShownName, escapesControlCharactersOnly) {
    EXPECT_EQ("Höhe 1/→ \\ %{0}", shownName("Höhe 1/→ \\ %{0}"));
    EXPECT_EQ("\\x1B[2J\\x0A\\x09\\x7F\\x00", shownName(std::string_view("\x1B[2J\n\t\x7F\0", 8)));
    // The second set of control characters, which some terminals obey: in UTF-8, and as single bytes.
    EXPECT_EQ("a\\xC2\\x9Bb\\x9Bc", shownName("a\xC2\x9B"
                                              "b\x9B"
                                              "c"));
    // The first character after that set, a no-break space.
    EXPECT_EQ("1\xC2\xA0m", shownName("1\xC2\xA0m"));
    // Continuation bytes of other characters.
    EXPECT_EQ("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B", shownName("\xC3\x9B\xE2\x80\x9B\xF0\x9F\x9B\x9B"));
}

TEST(ShownName, escapesInvalidUtf8) {
    EXPECT_EQ("caf\\xE9 1", shownName("caf\xE9 1"));
    EXPECT_EQ("\\xE2\\x80", shownName("\xE2\x80"));
    // Overlong, a surrogate, beyond the last character.
    EXPECT_EQ("\\xC0\\xAF \\xED\\xA0\\x80 \\xF4\\x90\\x80\\x80", shownName("\xC0\xAF \xED\xA0\x80 \xF4\x90\x80\x80"));
}

TEST(ShownName, escapesCharactersThatTurnText) {
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
    // An invalid byte counts as one character.
    EXPECT_EQ(columnsOf("caf\xE9"), 4U);
}

TEST(GroupedNumber, hasGroupsOfThreeDigits) {
    EXPECT_EQ("0", groupedNumber(0));
    EXPECT_EQ("999", groupedNumber(999));
    EXPECT_EQ("1 000", groupedNumber(1000));
    EXPECT_EQ("12 345 678", groupedNumber(12345678));
    EXPECT_EQ("18 446 744 073 709 551 615", groupedNumber(18446744073709551615ULL));
}

TEST(DecimalNumber, hasSignOfLanguage) {
    EXPECT_EQ("7.7", decimalNumber(7.73, 1));
    EXPECT_EQ('.', decimalSign());
    const GermanMessages german;
    EXPECT_EQ("7,7", decimalNumber(7.73, 1));
    EXPECT_EQ("8", decimalNumber(7.73, 0));
    EXPECT_EQ(',', decimalSign());
}

} // namespace vadelwatch
