#include "watch/map/node_lines.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

Lines nodeLinesOf(const std::string& content) {
    const TemporaryDirectory directory;
    NodeLineReader reader(directory.write("a.txt", content));
    Lines lines;
    std::string_view line;
    while (reader.next(line)) {
        lines.emplace_back(line);
    }
    return lines;
}

} // namespace

TEST(MapNodeLines, linesEndAtLineFeeds) {
    EXPECT_EQ((Lines{"a", "", "b\rc", "d"}), nodeLinesOf("a\n\nb\rc\r\nd\r\r\nlost"));
    EXPECT_EQ(Lines{}, nodeLinesOf(""));
    EXPECT_EQ(Lines{}, nodeLinesOf("no line feed"));
    NodeLineReader missing("/no/such/file.txt");
    std::string_view line;
    EXPECT_FALSE(missing.next(line));
}

TEST(MapNodeLines, whatIsNoRegularFileHasNoLines) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    for (const std::string& path : {fifo, directory.path(), directory.makeLink("endless", "/dev/zero")}) {
        NodeLineReader reader(path);
        std::string_view line;
        EXPECT_FALSE(reader.next(line)) << path;
    }
}

TEST(MapNodeLines, linesMayCrossAndExceedBlocks) {
    constexpr std::size_t longest = NodeLineReader::longestLine;
    for (const std::size_t length : {longest - 2, longest - 1, longest, longest + 1, 2 * longest - 1, 2 * longest,
                                     2 * longest + 1, 3 * longest, 5 * longest + 7}) {
        const std::string line(length, 'b');
        const std::string expected = line.substr(0, longest);
        EXPECT_EQ((Lines{"a", expected, "c"}), nodeLinesOf("a\n" + line + "\nc\n")) << length;
        EXPECT_EQ((Lines{expected, expected, "c"}), nodeLinesOf(line + "\n" + line + "\r\nc\n")) << length;
        EXPECT_EQ(Lines{"a"}, nodeLinesOf("a\n" + line)) << length;
    }
    std::string many;
    Lines expected;
    for (int i = 0; i < 300000; ++i) {
        expected.push_back(std::to_string(i) + ";1;2");
        many += expected.back() + "\n";
    }
    EXPECT_EQ(expected, nodeLinesOf(many));
}

} // namespace vadelwatch
