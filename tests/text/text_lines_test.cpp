#include "text/text_lines.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <ios>
#include <istream>
#include <random>
#include <streambuf>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

using Lines = std::vector<std::string>;

std::ifstream opened(const TemporaryDirectory& directory, const std::string& content) {
    return std::ifstream(directory.write("nodes.txt", content));
}

/// Returns all lines, without the failed attempt at the end.
Lines linesOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::ifstream input = opened(directory, content);
    Lines lines;
    std::string line;
    for (readTextLine(input, line); !input.fail(); readTextLine(input, line)) {
        lines.push_back(line);
    }
    return lines;
}

std::uint64_t countOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::ifstream input = opened(directory, content);
    return countLineFeeds(input);
}

constexpr std::size_t blockSize = 64 * 1024;

} // namespace

TEST(ReadTextLine, endsLineAtEachLineFeed) {
    EXPECT_EQ((Lines{"x;y;z", "1;2;3", "4;5;6"}), linesOf("x;y;z\n1;2;3\n4;5;6\n"));
    EXPECT_EQ((Lines{"", "a", "", "", "b"}), linesOf("\na\n\n\nb\n"));
    EXPECT_EQ((Lines{"a", "unterminated"}), linesOf("a\nunterminated"));
    EXPECT_EQ((Lines{}), linesOf(""));
    EXPECT_EQ((Lines{""}), linesOf("\n"));
}

TEST(ReadTextLine, removesCarriageReturnBeforeLineFeed) {
    EXPECT_EQ((Lines{"x;y;z", "1;2;3", "", "4;5;6"}), linesOf("x;y;z\r\n1;2;3\r\n\r\n4;5;6\r\n"));
    EXPECT_EQ((Lines{"a", "b", "c"}), linesOf("a\r\nb\nc\r\n"));
}

TEST(ReadTextLine, removesOneOfSeveralCarriageReturns) {
    EXPECT_EQ((Lines{"a\r", "\r\r", "b"}), linesOf("a\r\r\n\r\r\r\nb\r\n"));
}

TEST(ReadTextLine, keepsCarriageReturnWithoutLineFeed) {
    EXPECT_EQ((Lines{"a\rb", "\rc", "d\r e"}), linesOf("a\rb\n\rc\r\nd\r e\n"));
    EXPECT_EQ((Lines{"a\rb\rc\r"}), linesOf("a\rb\rc\r"));
}

TEST(ReadTextLine, keepsCarriageReturnAtEndOfFile) {
    EXPECT_EQ((Lines{"a", "b\r"}), linesOf("a\r\nb\r"));
    EXPECT_EQ((Lines{"\r"}), linesOf("\r"));
}

TEST(ReadTextLine, keepsAllOtherBytes) {
    const std::string bytes = std::string("\0", 1) + "\x01\t\v\f\xEF\xBB\xBF\x85\xFF\xE2\x80\xA8";
    EXPECT_EQ((Lines{bytes, "a" + bytes}), linesOf(bytes + "\n" + "a" + bytes + "\r\n"));
}

TEST(ReadTextLine, readsLinesOfAnyLength) {
    for (const std::size_t length : {blockSize - 1, blockSize, blockSize + 1, 20 * blockSize}) {
        const std::string line(length, '7');
        EXPECT_EQ((Lines{line, line}), linesOf(line + "\r\n" + line + "\n")) << length;
    }
}

TEST(ReadTextLine, returnsEmptyLineIfNothingCanBeRead) {
    const TemporaryDirectory directory;
    for (const std::string& path : {directory.pathOf("missing"), directory.path(), directory.write("empty", "")}) {
        std::ifstream input(path);
        std::string line = "left over";
        readTextLine(input, line);
        EXPECT_EQ("", line) << path;
        line = "left over";
        readTextLine(input, line);
        EXPECT_EQ("", line) << path;
    }
}

TEST(ReadTextLine, returnsEmptyLineAfterLastOne) {
    const TemporaryDirectory directory;
    for (const std::string content : {"last\n", "last\r\n", "last"}) {
        std::ifstream input = opened(directory, content);
        std::string line;
        readTextLine(input, line);
        EXPECT_EQ("last", line);
        readTextLine(input, line);
        EXPECT_EQ("", line) << "with the string of the line before";
        line = "left over\r";
        readTextLine(input, line);
        EXPECT_EQ("", line);
    }
}

TEST(CountLineFeeds, countsNothingElse) {
    EXPECT_EQ(0u, countOf(""));
    EXPECT_EQ(0u, countOf("a"));
    EXPECT_EQ(1u, countOf("\n"));
    EXPECT_EQ(1u, countOf("a\nb"));
    EXPECT_EQ(2u, countOf("a\nb\n"));
    EXPECT_EQ(3u, countOf("\n\n\n"));
    EXPECT_EQ(2u, countOf("a\r\nb\r\n"));
    EXPECT_EQ(0u, countOf("a\rb\r"));
    EXPECT_EQ(1u, countOf(std::string("\0\xFF\x0B\x0C\x85\r\0\n\0", 9)));
}

TEST(CountLineFeeds, countsBlocksOfEverySize) {
    std::mt19937 random(7);
    std::string bytes;
    for (int size = 0; size < 1200; ++size) {
        ASSERT_EQ(static_cast<std::uint64_t>(std::count(bytes.begin(), bytes.end(), '\n')),
                  countLineFeeds(bytes.data(), bytes.size()))
            << size;
        bytes += random() % 3 == 0 ? '\n' : '\x8A';
    }
    const std::string onlyLineFeeds(100000, '\n');
    EXPECT_EQ(100000U, countLineFeeds(onlyLineFeeds.data(), onlyLineFeeds.size()));
}

TEST(CountLineFeeds, countsFromPositionOfStream) {
    const TemporaryDirectory directory;
    for (const std::string lineEnd : {"\n", "\r\n"}) {
        std::ifstream input = opened(directory, "header" + lineEnd + "1" + lineEnd + "2" + lineEnd);
        std::string line;
        readTextLine(input, line);
        EXPECT_EQ(2u, countLineFeeds(input));
        EXPECT_EQ(0u, countLineFeeds(input)) << "at end of file";
    }
    std::ifstream unterminated = opened(directory, "header");
    std::string line;
    readTextLine(unterminated, line);
    EXPECT_EQ(0u, countLineFeeds(unterminated));
}

TEST(CountLineFeeds, countsInAllBlocks) {
    for (const std::size_t blocks : {std::size_t{1}, std::size_t{2}, std::size_t{3}}) {
        for (const std::size_t size : {blocks * blockSize - 1, blocks * blockSize, blocks * blockSize + 1}) {
            EXPECT_EQ(size, countOf(std::string(size, '\n'))) << size;
            // Only the last byte is a line feed, so that a byte that is lost or counted twice changes the count.
            EXPECT_EQ(1u, countOf(std::string(size - 1, '.') + '\n')) << size;
            EXPECT_EQ(1u, countOf('\n' + std::string(size - 1, '.'))) << size;
        }
    }
    // The bytes of a full block are not counted again in the unused part of the last block.
    EXPECT_EQ(blockSize, countOf(std::string(blockSize, '\n').append("...")));
}

TEST(CountLineFeeds, isZeroIfNothingCanBeRead) {
    const TemporaryDirectory directory;
    for (const std::string& path : {directory.pathOf("missing"), directory.path(), directory.write("empty", "")}) {
        std::ifstream input(path);
        EXPECT_EQ(0u, countLineFeeds(input)) << path;
        EXPECT_EQ(0u, countLineFeeds(input)) << path;
    }
}

namespace {

/// Returns its text in two pieces, as two system reads would, and then fails as a file does on a read error.
class FailingBuffer : public std::streambuf {
public:
    FailingBuffer() { setg(text.data(), text.data(), text.data() + 4); }

private:
    int_type underflow() override {
        if (egptr() == text.data() + text.size()) {
            throw std::ios_base::failure("read error");
        }
        setg(text.data(), egptr(), text.data() + text.size());
        return traits_type::to_int_type(*gptr());
    }

    std::string text = "a\nb\nc\nd";
};

} // namespace

TEST(CountLineFeeds, countsAllBytesBeforeReadError) {
    FailingBuffer buffer;
    std::istream input(&buffer);
    EXPECT_EQ(countLineFeeds(input), 3U);
}

} // namespace vadelclip
