#include "watch/check/node_files.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

const std::atomic<bool> goOn = false;

std::vector<std::string> namesIn(const NodeFiles& found) {
    std::vector<std::string> names;
    for (const NodeFile& file : found.files) {
        names.push_back(file.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST(NodeFiles, areThoseThatTheToolTakes) {
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

TEST(NodeFiles, saysWhyEntriesArePassedOver) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n");
    directory.write("capitals.TXT", "x;y;z\n");
    directory.write("carriage.txt", "x;y;z\r1;1;1\r");
    directory.write("columns.txt", "x;y;z;h\n");
    directory.write("empty.txt", "");
    directory.write("first.txt", "Y;X;Z\n");
    directory.write("other.dat", "x;y;z\n");
    directory.write("separator.txt", "x:y:z\n");
    directory.makeDirectory("directory.txt");
    directory.makeDirectory("plainDirectory");
    directory.makeLink("broken.txt", directory.pathOf("none"));
    std::vector<std::pair<std::string, PassedOver>> passedOver;
    for (const PassedOverEntry& entry : findNodeFiles(directory.path()).passedOver) {
        passedOver.emplace_back(entry.name, entry.reason);
    }
    const std::vector<std::pair<std::string, PassedOver>> expected{{"broken.txt", PassedOver::unreadable},
                                                                   {"capitals.TXT", PassedOver::capitals},
                                                                   {"carriage.txt", PassedOver::firstLineWithoutEnd},
                                                                   {"columns.txt", PassedOver::columns},
                                                                   {"directory.txt", PassedOver::directory},
                                                                   {"empty.txt", PassedOver::emptyFirstLine},
                                                                   {"first.txt", PassedOver::firstCharacter},
                                                                   {"other.dat", PassedOver::suffix},
                                                                   {"separator.txt", PassedOver::separator}};
    EXPECT_EQ(expected, passedOver);
}

TEST(NodeFiles, fifoIsNotRead) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n");
    ASSERT_EQ(0, mkfifo(directory.pathOf("b.txt").c_str(), 0600));
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_EQ(std::vector<std::string>{"a.txt"}, namesIn(found));
    EXPECT_EQ(std::vector<std::string>{"b.txt"}, found.unread);
}

TEST(NodeFiles, missingDirectoryHasNone) {
    EXPECT_FALSE(findNodeFiles("/none/there").isListed);
    EXPECT_TRUE(findNodeFiles("/none/there").files.empty());
}

TEST(NodeLineCount, addsLinesOfAllFiles) {
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

TEST(NodeLineCount, isUnknownAfterChangeOfFile) {
    const std::string content = "x;y;z\n1;1;1\n2;2;2\n";
    const TemporaryDirectory directory;
    directory.write("a.txt", content);
    NodeFiles found = findNodeFiles(directory.path());
    EXPECT_EQ(2U, readNodeFiles(found, goOn));
    for (const std::string& later : {std::string("x;y;z\n1;1;1\n"), content + "3;3;3\n", std::string()}) {
        directory.write("a.txt", later);
        EXPECT_FALSE(readNodeFiles(found, goOn)) << later;
    }
    // Replaced by a file of the same size with another time.
    const std::string sameSize = "x;y;z\n1;1;1\n\n;2;2\n";
    ASSERT_EQ(content.size(), sameSize.size());
    directory.write("a.txt", sameSize);
    const auto time = std::filesystem::last_write_time(directory.pathOf("a.txt"));
    std::filesystem::last_write_time(directory.pathOf("a.txt"), time + std::chrono::seconds(1));
    EXPECT_FALSE(readNodeFiles(found, goOn));
    std::filesystem::remove(directory.pathOf("a.txt"));
    EXPECT_FALSE(readNodeFiles(found, goOn));
}

TEST(NodeLineCount, isUnknownAfterStopOrWithFifo) {
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

TEST(FileState, missingFileHasNone) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(fileState(directory.pathOf("none")));
}

TEST(NodeFiles, brokenLinkIsIgnored) {
    const TemporaryDirectory directory;
    directory.makeLink("a.txt", directory.pathOf("none"));
    const NodeFiles found = findNodeFiles(directory.path());
    EXPECT_TRUE(found.files.empty());
    EXPECT_TRUE(found.unread.empty());
}

TEST(CountLines, leavesOutHeaderAndUnterminatedLine) {
    const TemporaryDirectory directory;
    struct Case {
        std::string content;
        std::uint64_t nodeLines;
        bool endsInLineFeed;
    };
    for (const Case& each :
         {Case{"", 0, false}, Case{"x;y;z", 0, false}, Case{"x;y;z\n", 0, true}, Case{"x;y;z\n1;1;1\n", 1, true},
          Case{"x;y;z\n1;1;1\n2;2;2", 1, false}, Case{"x;y;z\r\n\r\n\n", 2, true}}) {
        const auto count = countLines(directory.write("a", each.content));
        ASSERT_TRUE(count) << each.content;
        EXPECT_EQ(each.nodeLines, count->nodeLines()) << each.content;
        EXPECT_EQ(each.endsInLineFeed, count->endsInLineFeed) << each.content;
        EXPECT_EQ(each.content.size(), count->bytes);
    }
}

TEST(CountLines, countsFileOfManyBlocks) {
    const TemporaryDirectory directory;
    std::string content = "x;y;z\n";
    for (int i = 0; i < 300000; ++i) {
        content += "1;2;3\n";
    }
    EXPECT_EQ(300000U, countLines(directory.write("a", content))->nodeLines());
}

TEST(CountLines, opensOnlyRegularFiles) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    EXPECT_FALSE(countLines(fifo));
    EXPECT_FALSE(countLines("/dev/zero"));
    EXPECT_FALSE(countLines(directory.path()));
    EXPECT_FALSE(countLines(directory.pathOf("none")));
}

TEST(CountLines, fileThatCannotBeOpenedHasNone) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "x;y;z\n1;1;1\n");
    rlimit before{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
    // Root may open every file, so the limit on open files prevents it.
    const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    const auto count = countLines(path);
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &before));
    EXPECT_FALSE(count);
    EXPECT_EQ(1U, countLines(path)->nodeLines());
}

TEST(CountLines, followsLinks) {
    const TemporaryDirectory directory;
    directory.write("a", "x;y;z\n1;1;1\n");
    EXPECT_EQ(1U, countLines(directory.makeLink("link", directory.pathOf("a")))->nodeLines());
}

} // namespace vadelwatch
