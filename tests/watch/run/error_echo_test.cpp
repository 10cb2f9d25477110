#include "watch/run/error_echo.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vadelwatch {

TEST(ErrorEcho, aMessageRepeatsALineThatWasShownOnce) {
    ErrorEcho echo;
    echo.shown("a");
    EXPECT_TRUE(echo.repeats("a"));
    EXPECT_FALSE(echo.repeats("a"));
    echo.shown("a");
    echo.shown("a");
    EXPECT_TRUE(echo.repeats("a"));
    EXPECT_TRUE(echo.repeats("a"));
    EXPECT_FALSE(echo.repeats("a"));
}

TEST(ErrorEcho, onlyAWholeLineIsARepetition) {
    ErrorEcho echo;
    echo.shown("not found");
    EXPECT_FALSE(echo.repeats("found"));
    EXPECT_FALSE(echo.repeats("not"));
    EXPECT_FALSE(echo.repeats(""));
    EXPECT_TRUE(echo.repeats("not found"));
}

TEST(ErrorEcho, aTextMayHaveLineFeedsAndMayBeEmpty) {
    ErrorEcho echo;
    echo.shown("two");
    echo.shown("lines");
    echo.shown("");
    EXPECT_TRUE(echo.repeats("two\nlines"));
    EXPECT_TRUE(echo.repeats(""));
    EXPECT_FALSE(echo.repeats(""));
}

TEST(ErrorEcho, bytesThatAreNotUtf8AreComparedAsTheMessageHasThem) {
    ErrorEcho echo;
    echo.shown("caf\xE9.xml");
    EXPECT_TRUE(echo.repeats("caf\xEF\xBF\xBD.xml"));
}

TEST(ErrorEcho, linesInFrontOfARepetitionAreDoneWith) {
    ErrorEcho echo;
    echo.shown("Conversion failed");
    echo.shown("a");
    EXPECT_TRUE(echo.repeats("a"));
    EXPECT_FALSE(echo.repeats("Conversion failed"));
}

TEST(ErrorEcho, whatIsRememberedIsLimitedAndTheLatestLinesStay) {
    ErrorEcho echo;
    echo.shown("old");
    const std::string line(1000, 'x');
    for (int i = 0; i < 5000; ++i) {
        echo.shown(line);
    }
    echo.shown("new");
    EXPECT_FALSE(echo.repeats("old"));
    EXPECT_TRUE(echo.repeats("new"));
}

} // namespace vadelwatch
