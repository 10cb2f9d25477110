#include "watch/show/messages.hpp"

#include <gtest/gtest.h>

#include <locale>
#include <optional>
#include <string>

namespace vadelwatch {

namespace {

/// Returns a translated message after the set-up for a language. Leaves the classic locale.
std::string messageIn(const std::optional<std::string>& language) {
    setUpMessages(language);
    std::string message = translateMessage("Files written");
    std::locale::global(std::locale::classic());
    return message;
}

} // namespace

TEST(WatchMessages, areGermanByDefaultAndWhenTheToolIsGerman) {
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

} // namespace vadelwatch
