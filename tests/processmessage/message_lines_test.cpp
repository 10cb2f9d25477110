#include "processmessage/message_lines.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace vadelclip {

namespace {

/// Returns the text between the quotes of an error line.
std::string quoted(const std::string& text) {
    const std::string line = errorLine(2, text);
    const std::string start = R"({"type":"error","level":2,"text":")";
    const std::string end = "\"}\n";
    EXPECT_EQ(start, line.substr(0, start.size()));
    EXPECT_EQ(end, line.substr(line.size() - end.size()));
    return line.substr(start.size(), line.size() - start.size() - end.size());
}

} // namespace

TEST(MessageLines, writesKeysInAFixedOrder) {
    EXPECT_EQ("{\"type\":\"error\",\"level\":2,\"text\":\"Directory base does not exist\"}\n",
              errorLine(2, "Directory base does not exist"));
    EXPECT_EQ("{\"type\":\"state\",\"level\":1,\"text\":\"Clipping elevation data...\",\"active\":true}\n",
              stateLine(1, "Clipping elevation data...", true));
    EXPECT_EQ("{\"type\":\"state\",\"level\":1,\"text\":\"\",\"active\":false}\n", stateLine(1, "", false));
    EXPECT_EQ("{\"type\":\"failed\",\"level\":1,\"text\":\"failed.\"}\n", failedLine(1, "failed."));
    EXPECT_EQ("{\"type\":\"finish\",\"level\":1,\"text\":\"Finished\"}\n", finishLine(1, "Finished"));
    EXPECT_EQ("{\"type\":\"progress\",\"percent\":12.5}\n", progressLine(125));
}

TEST(MessageLines, acceptsAnyLevel) {
    EXPECT_EQ("{\"type\":\"error\",\"level\":-2147483648,\"text\":\"\"}\n",
              errorLine(std::numeric_limits<int>::min(), ""));
    EXPECT_EQ("{\"type\":\"finish\",\"level\":2147483647,\"text\":\"\"}\n",
              finishLine(std::numeric_limits<int>::max(), ""));
    EXPECT_EQ("{\"type\":\"failed\",\"level\":0,\"text\":\"\"}\n", failedLine(0, ""));
}

TEST(MessageLines, writesTenthsWithOneDecimal) {
    for (int tenths = 0; tenths <= 1000; ++tenths) {
        EXPECT_EQ("{\"type\":\"progress\",\"percent\":" + std::to_string(tenths / 10) + "." +
                      std::to_string(tenths % 10) + "}\n",
                  progressLine(tenths));
    }
}

TEST(MessageLines, escapesReservedCharacters) {
    EXPECT_EQ(R"(a\"b\\c)", quoted("a\"b\\c"));
    EXPECT_EQ(R"(a\nb\tc\rd\be\ff)", quoted("a\nb\tc\rd\be\ff"));
    EXPECT_EQ(R"(\u0000\u0001\u001b\u001f)", quoted(std::string("\0\x01\x1B\x1F", 4)));
    EXPECT_EQ("/ \x7F '", quoted("/ \x7F '"));
}

TEST(MessageLines, lineHasExactlyOneLineFeed) {
    for (const std::string& line : {errorLine(2, "a\n\nb\n"), stateLine(1, "\n", true), failedLine(1, "\r\n"),
                                    finishLine(1, "a\nb"), progressLine(0)}) {
        EXPECT_EQ(line.size() - 1, line.find('\n')) << line;
    }
}

TEST(MessageLines, keepsTextsOfEveryLanguage) {
    for (const char* const text : {"Höhendaten", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xE2\x82\xAC", "\xEF\xBB\xBF",
                                   "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xE2\x80\xA8"}) {
        EXPECT_EQ(text, quoted(text));
    }
}

TEST(MessageLines, replacesBytesThatAreNotUtf8) {
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ("H" + replaced + "hen", quoted("H\xF6hen"));
    EXPECT_EQ(replaced, quoted("\xFF"));
    EXPECT_EQ(replaced + replaced, quoted("\xFF\xFE"));
    EXPECT_EQ(replaced, quoted("\x80"));
    // Incomplete characters, at the end and before another character.
    EXPECT_EQ("a" + replaced, quoted("a\xC3"));
    EXPECT_EQ("a" + replaced, quoted("a\xE2\x82"));
    EXPECT_EQ(replaced + "a", quoted("\xE2\x82"
                                     "a"));
    EXPECT_EQ(replaced + "\"", quoted("\xC3") + "\"");
    EXPECT_EQ(replaced + R"(\")", quoted("\xC3\""));
    EXPECT_EQ(replaced + R"(\n)", quoted("\xC3\n"));
}

TEST(MessageLines, everyLineIsValidUtf8) {
    // Overlong forms, halves of surrogate pairs and numbers beyond Unicode. The library decides how many replacement
    // characters replace them; no other byte may be left.
    for (const char* const text : {"\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xED\xBF\xBF",
                                   "\xF0\x80\x80\xAF", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFC"}) {
        std::string rest = quoted(text);
        ASSERT_FALSE(rest.empty());
        while (!rest.empty()) {
            ASSERT_EQ("\xEF\xBF\xBD", rest.substr(0, 3)) << text;
            rest.erase(0, 3);
        }
    }
}

TEST(MessageLines, doesNotTruncateLongTexts) {
    const std::string text(1000000, 'a');
    EXPECT_EQ(text, quoted(text));
}

} // namespace vadelclip
