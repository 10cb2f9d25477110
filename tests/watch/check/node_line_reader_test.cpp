#include "watch/check/node_line_reader.hpp"

#include "support/file_support.hpp"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const std::string& content) {
    const TemporaryDirectory directory;
    NodeLineReader reader(directory.write("a.txt", content));
    Lines lines;
    std::string_view line;
    while (reader.next(line)) {
        lines.emplace_back(line);
    }
    EXPECT_FALSE(reader.hasFailed());
    EXPECT_EQ(lines.size(), reader.count().lineFeeds);
    EXPECT_EQ(content.size(), reader.count().bytes);
    EXPECT_EQ(content.ends_with('\n'), reader.count().endsInLineFeed);
    return lines;
}

} // namespace

TEST(NodeLineReader, endsLinesAtLineFeeds) {
    EXPECT_EQ((Lines{"a", "", "b\rc\r", "d\r\r"}), linesOf("a\n\nb\rc\r\nd\r\r\nlost"));
    EXPECT_EQ(Lines{}, linesOf(""));
    EXPECT_EQ(Lines{}, linesOf("no line feed"));
}

TEST(NodeLineReader, readsOnlyRegularFiles) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path :
         {fifo, directory.path(), directory.makeLink("endless", "/dev/zero"), directory.pathOf("none")}) {
        NodeLineReader reader(path);
        std::string_view line;
        EXPECT_FALSE(reader.next(line)) << path;
        EXPECT_TRUE(reader.hasFailed()) << path;
    }
}

TEST(NodeLineReader, readsLinesAcrossAndBeyondBlocks) {
    constexpr std::size_t longest = NodeLineReader::longestLine;
    for (const std::size_t length : {longest - 2, longest - 1, longest, longest + 1, 2 * longest - 1, 2 * longest,
                                     2 * longest + 1, 3 * longest, 5 * longest + 7}) {
        const std::string line(length, 'b');
        const std::string expected = line.substr(0, longest);
        EXPECT_EQ((Lines{"a", expected, "c"}), linesOf("a\n" + line + "\nc\n")) << length;
        EXPECT_EQ((Lines{expected, expected, "c"}), linesOf(line + "\n" + line + "\nc\n")) << length;
        EXPECT_EQ(Lines{"a"}, linesOf("a\n" + line)) << length;
    }
    std::string many;
    Lines expected;
    for (int i = 0; i < 300000; ++i) {
        expected.push_back(std::to_string(i) + ";1;2");
        many += expected.back() + "\n";
    }
    EXPECT_EQ(expected, linesOf(many));
}

} // namespace vadelwatch
