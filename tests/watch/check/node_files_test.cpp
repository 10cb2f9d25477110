#include "watch/check/node_files.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

std::vector<std::string> namesIn(const NodeFiles& found) {
    std::vector<std::string> names;
    for (const NodeFile& file : found.files) {
        names.push_back(file.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST(NodeFiles, areChosenAsTheToolChoosesThem) {
    const TemporaryDirectory directory;
    const std::string header = "x;y;z\n";
    for (const char* const name : {"a.txt", "b.xyz", "c.csv", ".txt", "no.TXT", "no.dat", "deep/no.txt"}) {
        directory.write(name, header);
    }
    directory.write("carriage.txt", "X,Y,Z,G\r\n1,1,1,1\r\n");
    directory.write("headerAlone.txt", "x y z");
    directory.write("lone.txt", "x y z\r");
    directory.write("empty.txt", "");
    directory.write("other.txt", "remark\n");
    directory.makeDirectory("directory.txt");
    directory.makeLink("link.txt", directory.pathOf("a.txt"));
    directory.makeLink("broken.txt", directory.pathOf("none"));
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_EQ(
        (std::vector<std::string>{".txt", "a.txt", "b.xyz", "c.csv", "carriage.txt", "headerAlone.txt", "link.txt"}),
        namesIn(found));
    EXPECT_TRUE(found.unread.empty());
}

TEST(NodeFiles, aPipeMakesTheCountIncomplete) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n");
    ASSERT_EQ(0, mkfifo(directory.pathOf("b.txt").c_str(), 0600));
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_EQ(std::vector<std::string>{"a.txt"}, namesIn(found));
    EXPECT_EQ(std::vector<std::string>{"b.txt"}, found.unread);
}

TEST(NodeFiles, aDirectoryThatIsNotThereHoldsNothing) {
    EXPECT_TRUE(findNodeFiles("/none/there").files.empty());
}

TEST(NodeLineCount, addsUpTheLinesOfAllFiles) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n1;1;1\n2;2;2\n");
    directory.write("b.txt", "x;y;z\n1;1;1\nunterminated");
    directory.write("c.txt", "x;y;z");
    NodeLineCount count;
    EXPECT_FALSE(count.nodeLines());
    count.start(directory.path());
    count.wait();
    EXPECT_EQ(3U, count.nodeLines());
    EXPECT_EQ(3U, count.nodeFiles().files.size());
}

TEST(NodeLineCount, isUnknownWhereAFileIsNoLongerWhatItWas) {
    const std::string content = "x;y;z\n1;1;1\n2;2;2\n";
    const std::atomic<bool> notCancelled = false;
    const TemporaryDirectory directory;
    directory.write("a.txt", content);
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_EQ(2U, countNodeLines(found, notCancelled));
    for (const std::string& later : {std::string("x;y;z\n1;1;1\n"), content + "3;3;3\n", std::string()}) {
        directory.write("a.txt", later);
        EXPECT_FALSE(countNodeLines(found, notCancelled)) << later;
    }
    // Replaced by a file of the same size, of another time.
    const std::string sameSize = "x;y;z\n1;1;1\n\n;2;2\n";
    ASSERT_EQ(content.size(), sameSize.size());
    directory.write("a.txt", sameSize);
    const auto time = std::filesystem::last_write_time(directory.pathOf("a.txt"));
    std::filesystem::last_write_time(directory.pathOf("a.txt"), time + std::chrono::seconds(1));
    EXPECT_FALSE(countNodeLines(found, notCancelled));
    std::filesystem::remove(directory.pathOf("a.txt"));
    EXPECT_FALSE(countNodeLines(found, notCancelled));
}

TEST(NodeLineCount, isUnknownForEverWhenItWasStoppedOrCannotBeMade) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n1;1;1\n");
    NodeLineCount stopped;
    stopped.stop();
    stopped.start(directory.path());
    stopped.wait();
    EXPECT_FALSE(stopped.nodeLines());

    ASSERT_EQ(0, mkfifo(directory.pathOf("b.txt").c_str(), 0600));
    NodeLineCount incomplete;
    incomplete.start(directory.path());
    incomplete.wait();
    EXPECT_FALSE(incomplete.nodeLines());
}

TEST(FileState, thereIsNoneOfAFileThatIsNotThere) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(fileState(directory.pathOf("none")));
}

TEST(FindNodeFiles, aLinkThatLeadsNowhereIsNone) {
    const TemporaryDirectory directory;
    directory.makeLink("a.txt", directory.pathOf("none"));
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_TRUE(found.files.empty());
    EXPECT_TRUE(found.unread.empty());
}

} // namespace vadelwatch
