#include "watch/map/text.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vadelwatch {

TEST(MapText, keepsValidText) {
    for (const char* const text : {"", "road.xml", "Gel\xC3\xA4nde", "\xE6\x97\xA5", "\xF0\x9F\x97\xBA", "a & <b>"}) {
        EXPECT_EQ(text, readableText(text));
    }
}

TEST(MapText, replacesInvalidBytesAndControls) {
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b",
              readableText("a\xFF"
                           "b"));
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b",
              readableText("a\nb"));
    EXPECT_EQ("\xEF\xBF\xBD", readableText("\x7F"));
    EXPECT_EQ("\xEF\xBF\xBD", readableText("\xC3"));
    EXPECT_EQ("\xEF\xBF\xBDz", readableText("\xC3z"));
    // Each sequence becomes one U+FFFD: overlong, a surrogate, beyond the last character.
    for (const char* const sequence : {"\xC0\x80", "\xED\xA0\x80", "\xE0\x80\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ("\xEF\xBF\xBD", readableText(sequence));
    }
    EXPECT_EQ("\xEF\xBF\xBD", readableText(std::string(1, '\0')));
}

TEST(MapText, shortensTextBetweenCharacters) {
    const auto bytes = [](const std::string& text) { return static_cast<double>(text.size()); };
    EXPECT_EQ("abcdef", fitText("abcdef", 6.0, bytes));
    EXPECT_EQ("a\xE2\x80\xA6"
              "f",
              fitText("abcdef", 5.0, bytes));
    EXPECT_EQ("ab\xE2\x80\xA6"
              "gh",
              fitText("abcdefgh", 7.0, bytes));
    // Never part of a character.
    EXPECT_EQ("\xC3\xA4\xE2\x80\xA6", fitText("\xC3\xA4\xC3\xA4\xC3\xA4", 5.0, bytes));
    EXPECT_EQ("\xE2\x80\xA6", fitText("abc", 0.0, bytes));
}

TEST(MapText, findsLastComponentOfPath) {
    EXPECT_EQ("nodes", lastComponent("base/nodes"));
    EXPECT_EQ("nodes", lastComponent("base/nodes/"));
    EXPECT_EQ("nodes", lastComponent("nodes"));
    EXPECT_EQ("a b.xml", lastComponent("/x/a b.xml"));
    EXPECT_EQ("", lastComponent("/"));
}

TEST(MapText, shrinksTooWideText) {
    EXPECT_EQ(20.0, fittingSize(20.0, 300.0, 300.0));
    EXPECT_EQ(20.0, fittingSize(20.0, 0.0, 300.0));
    EXPECT_DOUBLE_EQ(15.0, fittingSize(20.0, 400.0, 300.0));
}

} // namespace vadelwatch
