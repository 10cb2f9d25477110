#include "shard/input_scan.hpp"

#include "support/file_support.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vadelshard {
namespace {

using testing::ElementsAre;
using vadelclip::TemporaryDirectory;

/// Not the constructor of std::string: GCC 12 then warns of a copy that does not exist.
std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// Cuts a file with this content and returns the texts of its units.
std::vector<std::string> cut(const std::string& content, std::uint64_t part) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a.xyz", content);
    const Unit whole{"a.xyz", OpenFile::forReading(path).state(), 0, content.size()};
    std::vector<std::string> texts;
    for (const Unit& unit : cutIntoUnits(directory.path(), whole, part)) {
        EXPECT_EQ(unit.name, "a.xyz");
        EXPECT_EQ(unit.file, whole.file);
        texts.push_back(content.substr(unit.begin, unit.end - unit.begin));
    }
    return texts;
}

Unit unitOf(const std::string& name, std::uint64_t size) {
    return {name, {size, 0}, 0, size};
}

std::vector<std::string> namesIn(const Shard& shard) {
    std::vector<std::string> names;
    for (const Unit& unit : shard) {
        names.push_back(unit.name);
    }
    return names;
}

TEST(CutIntoUnits, leavesFileOfPartLengthWhole) {
    EXPECT_THAT(cut("x;y;z\n1;1;1\n", 12), ElementsAre("x;y;z\n1;1;1\n"));
}

TEST(CutIntoUnits, cutsAfterLineFeedThatEndsPart) {
    EXPECT_THAT(cut("x;y;z\n1;1;1\n2", 12), ElementsAre("x;y;z\n1;1;1\n", "2"));
}

TEST(CutIntoUnits, cutsAfterNextLineFeed) {
    EXPECT_THAT(cut("x;y;z\n1;1;1\n2;2;2\n", 7), ElementsAre("x;y;z\n1;1;1\n", "2;2;2\n"));
    EXPECT_THAT(cut("x;y;z\n1;1;1\n2;2;2\n3", 7), ElementsAre("x;y;z\n1;1;1\n", "2;2;2\n3"));
}

TEST(CutIntoUnits, givesEachLineItsUnitForPartOfOneByte) {
    EXPECT_THAT(cut("x;y;z\n\n1\r\n2", 1), ElementsAre("x;y;z\n", "\n", "1\r\n", "2"));
}

TEST(CutIntoUnits, findsLineFeedFarAway) {
    const std::string longLine = repeated("1", 20'000) + '\n';
    EXPECT_THAT(cut("x;y;z\n" + longLine + "2\n", 10), ElementsAre("x;y;z\n" + longLine, "2\n"));
}

TEST(CutIntoUnits, leavesFileWithoutShortFirstLineWhole) {
    const std::string content = repeated("x", 100) + "\n1;1;1\n";
    EXPECT_THAT(cut(content, 10), ElementsAre(content));
    EXPECT_THAT(cut("x;y;z", 2), ElementsAre("x;y;z"));
}

TEST(CutIntoUnits, hasNoMoreLineFeedsThanBytesOfPart) {
    for (const std::string& text : cut("x;y;z\n" + repeated("\n", 50) + "1\n\n2\n\n\n", 4)) {
        EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 4) << text;
    }
}

TEST(RawFirstLine, keepsMarkAndLineEnd) {
    const TemporaryDirectory directory;
    const std::string line = vadelclip::byteOrderMark + "x;y;z\r\n";
    EXPECT_EQ(rawFirstLine(OpenFile::forReading(directory.write("a", line + "1"))), line);
    EXPECT_EQ(rawFirstLine(OpenFile::forReading(directory.write("b", "x;y"))), "x;y");
    EXPECT_EQ(rawFirstLine(OpenFile::forReading(directory.write("c", repeated("x", 64)))), std::nullopt);
}

TEST(IsNodeFileLine, followsRulesOfTool) {
    EXPECT_TRUE(isNodeFileLine("x;y;z\n"));
    EXPECT_TRUE(isNodeFileLine(vadelclip::byteOrderMark + "X Y Z G\r\n"));
    EXPECT_TRUE(isNodeFileLine("x,y,z"));
    EXPECT_FALSE(isNodeFileLine("x,y,z\r"));
    EXPECT_FALSE(isNodeFileLine("x,y,z\r\r\n"));
    EXPECT_FALSE(isNodeFileLine(""));
}

TEST(Distribute, putsLargestUnitsFirst) {
    const std::vector<Shard> shards =
        distribute({unitOf("small", 1'000'000), unitOf("large", 3'000'000), unitOf("middle", 2'500'000)}, 2);
    ASSERT_EQ(shards.size(), 2U);
    EXPECT_THAT(namesIn(shards[0]), ElementsAre("middle", "small"));
    EXPECT_THAT(namesIn(shards[1]), ElementsAre("large"));
}

TEST(Distribute, makesNoMoreShardsThanUnits) {
    EXPECT_EQ(distribute({unitOf("a", 1), unitOf("b", 2)}, 1000).size(), 2U);
    EXPECT_TRUE(distribute({}, 1000).empty());
}

TEST(Distribute, spreadsEmptyFiles) {
    for (const Shard& shard : distribute({unitOf("a", 0), unitOf("b", 0), unitOf("c", 0), unitOf("d", 0)}, 2)) {
        EXPECT_EQ(shard.size(), 2U);
    }
}

} // namespace
} // namespace vadelshard
