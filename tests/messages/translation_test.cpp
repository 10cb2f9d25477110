#include "messages/translation.hpp"

#include "support/catalogue_support.hpp"
#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/recording_messages.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace vadelclip {

namespace {

/// Returns the text of the error, or the formatted text if there is no error.
template <typename... Arguments>
std::string formatError(const std::string& messageId, const Arguments&... arguments) {
    try {
        return "no error: " + formatMessage(messageId, arguments...);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

} // namespace

TEST(TranslateMessage, returnsTheIdInTheClassicLocale) {
    EXPECT_EQ("There are no input files.", translateMessage("There are no input files."));
}

TEST(TranslateMessage, returnsTheIdWithoutACatalogue) {
    const GeneratedLocale german("de_DE.utf8");
    EXPECT_EQ("There are no input files.", translateMessage("There are no input files."));
}

TEST(TranslateMessage, returnsAnIdThatIsNotInTheCatalogue) {
    const GeneratedLocale german("de.utf8", {{"Another id", "Etwas anderes"}});
    EXPECT_EQ("There are no input files.", translateMessage("There are no input files."));
    EXPECT_EQ("There are no input files", translateMessage("There are no input files"));
}

TEST(TranslateMessage, returnsTheTranslationOfAnId) {
    const GeneratedLocale german("de.utf8", {{"There are no input files.", "Keine Höhendateien: {0} } {"}});
    EXPECT_EQ("Keine Höhendateien: {0} } {", translateMessage("There are no input files."));
}

TEST(TranslateMessage, usesTheCurrentLocale) {
    EXPECT_EQ("Clipping elevation data...", translateMessage("Clipping elevation data..."));
    {
        const GeneratedLocale german("de.utf8", {{"Clipping elevation data...", "Zuschneiden"}});
        EXPECT_EQ("Zuschneiden", translateMessage("Clipping elevation data..."));
    }
    EXPECT_EQ("Clipping elevation data...", translateMessage("Clipping elevation data..."));
}

TEST(TranslateMessage, reportsNothing) {
    clearRecordedCalls();
    ConsoleCapture console;
    translateMessage("There are no input files.");
    formatMessage("Directory {0} does not exist", "base");
    EXPECT_EQ("", console.text());
    EXPECT_EQ(Calls(), recordedCalls());
}

TEST(FormatMessage, usesTheEnglishIdAsAFormatString) {
    EXPECT_EQ("Boundary file area.xml not found", formatMessage("Boundary file {0} not found", "area.xml"));
    EXPECT_EQ("Cannot read point 2 in polygon -7",
              formatMessage("Cannot read point {0} in polygon {1}", std::int32_t{2}, std::int32_t{-7}));
    EXPECT_EQ("b a b", formatMessage("{1} {0} {1}", "a", "b"));
    EXPECT_EQ("a and b", formatMessage("{} and {}", "a", "b"));
    EXPECT_EQ("{0} }{", formatMessage("{{0}} }}{{"));
    EXPECT_EQ("no placeholder", formatMessage("no placeholder", "unused", std::int32_t{1}));
}

TEST(FormatMessage, doesNotInterpretArgumentsAsFormats) {
    const std::string withZero("a\0b", 3);
    EXPECT_EQ("<{0}{1}{>", formatMessage("<{0}>", "{0}{1}{"));
    EXPECT_EQ("<>", formatMessage("<{0}>", ""));
    EXPECT_EQ("<\xFF\xFE>", formatMessage("<{0}>", "\xFF\xFE"));
    EXPECT_EQ("<" + withZero + ">", formatMessage("<{0}>", withZero));
    EXPECT_EQ("<%s%n>", formatMessage("<{0}>", "%s%n"));
}

TEST(FormatMessage, printsPlainNumbersInEveryLanguage) {
    const auto numbers = [] {
        return formatMessage("{0} {1} {2}", std::int32_t{1234567}, std::numeric_limits<std::int32_t>::min(),
                             std::numeric_limits<std::int32_t>::max());
    };
    EXPECT_EQ("1234567 -2147483648 2147483647", numbers());
    for (const char* const name : {"de.utf8", "de_DE.utf8", "fr_FR.utf8", "ar_EG.utf8", ".utf8"}) {
        const GeneratedLocale generated(name);
        EXPECT_EQ("1234567 -2147483648 2147483647", numbers()) << name;
    }
}

TEST(FormatMessage, usesTheTranslationAsTheFormat) {
    const GeneratedLocale german("de.utf8", {{"Cannot read point {0} in polygon {1}", "{1}: Punkt {0} unlesbar"},
                                             {"Directory {0} does not exist", "Verzeichnis fehlt"},
                                             {"Boundary file {0} not found", "Grenzdatei {0} fehlt ({0})"}});
    EXPECT_EQ("7: Punkt 2 unlesbar",
              formatMessage("Cannot read point {0} in polygon {1}", std::int32_t{2}, std::int32_t{7}));
    EXPECT_EQ("Verzeichnis fehlt", formatMessage("Directory {0} does not exist", "base"));
    EXPECT_EQ("Grenzdatei a.xml fehlt (a.xml)", formatMessage("Boundary file {0} not found", "a.xml"));
    EXPECT_EQ("Input directory in does not exist", formatMessage("Input directory {0} does not exist", "in"));
}

TEST(FormatMessage, placeholderWithoutAnArgumentIsAnError) {
    EXPECT_EQ("argument not found", formatError("{1}", "only one"));
    EXPECT_EQ("argument not found", formatError("{0}"));
    EXPECT_EQ("argument not found", formatError("{} {}", "only one"));
    EXPECT_EQ("argument not found", formatError("{name}", "a"));
}

TEST(FormatMessage, malformedPlaceholderIsAnError) {
    EXPECT_EQ("invalid format string", formatError("{", "a"));
    EXPECT_EQ("invalid format string", formatError("{0", "a"));
    EXPECT_EQ("invalid format string", formatError("{ 0}", "a"));
    EXPECT_EQ("invalid format string", formatError("{-1}", "a"));
    EXPECT_EQ("unmatched '}' in format string", formatError("0}", "a"));
    EXPECT_EQ("cannot switch from manual to automatic argument indexing", formatError("{0} {}", "a"));
    EXPECT_EQ("cannot switch from automatic to manual argument indexing", formatError("{} {0}", "a"));
    // The texts of these two errors depend on the version of the library.
    EXPECT_THROW(formatMessage("{0:d}", "text"), std::runtime_error);
    EXPECT_THROW(formatMessage("{0:s}", std::int32_t{1}), std::runtime_error);
}

TEST(FormatMessage, mistakeInATranslationIsAnErrorWhenItIsUsed) {
    const GeneratedLocale german("de.utf8", {{"Directory {0} does not exist", "Verzeichnis {1} fehlt"}});
    EXPECT_EQ("Verzeichnis {1} fehlt", translateMessage("Directory {0} does not exist"));
    EXPECT_EQ("argument not found", formatError("Directory {0} does not exist", "base"));
}

} // namespace vadelclip
