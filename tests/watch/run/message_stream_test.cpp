#include "watch/run/message_stream.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

std::vector<std::string> linesIn(const std::vector<std::string>& blocks) {
    std::vector<std::string> lines;
    const auto note = [&lines](std::string_view line) { lines.emplace_back(line); };
    LineSplitter splitter;
    for (const std::string& block : blocks) {
        splitter.feed(block, note);
    }
    splitter.finish(note);
    return lines;
}

} // namespace

TEST(LineSplitter, blocksMayEndAnywhere) {
    const std::string bytes = "first\n\nthird line\n\r\nlast";
    const std::vector<std::string> expected{"first", "", "third line", "\r", "last"};
    for (std::size_t size = 1; size <= bytes.size(); ++size) {
        std::vector<std::string> blocks;
        for (std::size_t at = 0; at < bytes.size(); at += size) {
            blocks.push_back(bytes.substr(at, size));
        }
        EXPECT_EQ(expected, linesIn(blocks)) << "blocks of " << size;
    }
}

TEST(LineSplitter, emptyStreamHasNoLines) {
    EXPECT_TRUE(linesIn({}).empty());
    EXPECT_TRUE(linesIn({"", ""}).empty());
    EXPECT_EQ(std::vector<std::string>{"a"}, linesIn({"a\n", ""}));
}

TEST(ParseMessage, readsEveryKindOfMessage) {
    const Message error = parseMessage(R"({"type":"error","level":2,"text":"Höhe \"1\"\n"})");
    EXPECT_EQ(MessageKind::error, error.kind);
    EXPECT_EQ("Höhe \"1\"\n", error.text);
    EXPECT_TRUE(error.isJson);

    EXPECT_EQ(MessageKind::state, parseMessage(R"({"type":"state","level":1,"text":"a","active":true})").kind);
    EXPECT_EQ(MessageKind::failed, parseMessage(R"({"type":"failed","level":1,"text":"a"})").kind);
    EXPECT_EQ(MessageKind::finish, parseMessage(R"({"type":"finish","level":1,"text":"a"})").kind);

    const Message progress = parseMessage(R"({"type":"progress","percent":12.5})");
    EXPECT_EQ(MessageKind::progress, progress.kind);
    EXPECT_EQ(12.5, progress.percent);
}

TEST(ParseMessage, limitsPercent) {
    EXPECT_EQ(0.0, parseMessage(R"({"type":"progress","percent":-1})").percent);
    EXPECT_EQ(100.0, parseMessage(R"({"type":"progress","percent":1e300})").percent);
}

TEST(ParseMessage, unknownTypeIsOther) {
    EXPECT_EQ(MessageKind::other, parseMessage(R"({"type":"news"})").kind);
}

TEST(ParseMessage, otherJsonIsUnreadable) {
    for (const char* const line : {"1", "[]", "{}", "null", R"({"type":1})", R"({"type":"error"})",
                                   R"({"type":"error","text":1})", R"({"type":"progress","percent":"1"})"}) {
        const Message message = parseMessage(line);
        EXPECT_EQ(MessageKind::unreadable, message.kind) << line;
        EXPECT_TRUE(message.isJson) << line;
    }
}

TEST(ParseMessage, otherTextIsUnreadable) {
    for (const char* const line :
         {"", " ", "text", "{", R"({"type":"error","text":"a"} x)", "{\"type\":\"error\",\"text\":\"caf\xE9\"}",
          R"({"type":"progress","percent":NaN})"}) {
        const Message message = parseMessage(line);
        EXPECT_EQ(MessageKind::unreadable, message.kind) << line;
        EXPECT_FALSE(message.isJson) << line;
    }
}

TEST(LogLine, keepsMessageByteForByte) {
    const std::string line = R"({"type" : "progress", "percent":12.50 })";
    EXPECT_EQ("{\"seconds\":1.250000,\"message\":" + line + "}\n", logLine(1.25, line, parseMessage(line)));
}

TEST(LogLine, quotesLineThatIsNotJson) {
    EXPECT_EQ("{\"seconds\":0.000001,\"line\":\"a \\\"b\\\" \xEF\xBF\xBD\"}\n",
              logLine(0.000001, "a \"b\" \xFF", parseMessage("a \"b\" \xFF")));
}

TEST(ErrorEcho, eachLineIsRepeatedOnce) {
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

TEST(ErrorEcho, comparesWholeLines) {
    ErrorEcho echo;
    echo.shown("not found");
    EXPECT_FALSE(echo.repeats("found"));
    EXPECT_FALSE(echo.repeats("not"));
    EXPECT_FALSE(echo.repeats(""));
    EXPECT_TRUE(echo.repeats("not found"));
}

TEST(ErrorEcho, textMayHaveLineFeedsOrBeEmpty) {
    ErrorEcho echo;
    echo.shown("two");
    echo.shown("lines");
    echo.shown("");
    EXPECT_TRUE(echo.repeats("two\nlines"));
    EXPECT_TRUE(echo.repeats(""));
    EXPECT_FALSE(echo.repeats(""));
}

TEST(ErrorEcho, replacesInvalidUtf8AsMessagesDo) {
    ErrorEcho echo;
    echo.shown("caf\xE9.xml");
    EXPECT_TRUE(echo.repeats("caf\xEF\xBF\xBD.xml"));
    // One mark for each byte of a surrogate, as the JSON library of the tool writes it.
    echo.shown("\xED\xA0\x80");
    EXPECT_TRUE(echo.repeats("\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"));
}

TEST(ErrorEcho, forgetsLinesBeforeRepeatedOne) {
    ErrorEcho echo;
    echo.shown("Conversion failed");
    echo.shown("a");
    EXPECT_TRUE(echo.repeats("a"));
    EXPECT_FALSE(echo.repeats("Conversion failed"));
}

TEST(ErrorEcho, forgetsOldestLinesFirst) {
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
