#include "watch/check/line_count.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

const std::atomic<bool> goOn = false;

} // namespace

TEST(CountLines, headerAndUnterminatedLinesDoNotCount) {
    const TemporaryDirectory directory;
    struct Case {
        std::string content;
        std::uint64_t nodeLines;
        bool endsInLineFeed;
    };
    for (const Case& each :
         {Case{"", 0, false}, Case{"x;y;z", 0, false}, Case{"x;y;z\n", 0, true}, Case{"x;y;z\n1;1;1\n", 1, true},
          Case{"x;y;z\n1;1;1\n2;2;2", 1, false}, Case{"x;y;z\r\n\r\n\n", 2, true}}) {
        const auto count = countLines(directory.write("a", each.content), goOn);
        ASSERT_TRUE(count) << each.content;
        EXPECT_EQ(each.nodeLines, count->nodeLines()) << each.content;
        EXPECT_EQ(each.endsInLineFeed, count->endsInLineFeed) << each.content;
        EXPECT_EQ(each.content.size(), count->bytes);
    }
}

TEST(CountLines, aFileOfManyBlocks) {
    const TemporaryDirectory directory;
    std::string content = "x;y;z\n";
    for (int i = 0; i < 300000; ++i) {
        content += "1;2;3\n";
    }
    EXPECT_EQ(300000U, countLines(directory.write("a", content), goOn)->nodeLines());
}

TEST(CountLines, whatIsNoRegularFileIsNotTouched) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    EXPECT_FALSE(countLines(fifo, goOn));
    EXPECT_FALSE(countLines("/dev/zero", goOn));
    EXPECT_FALSE(countLines(directory.path(), goOn));
    EXPECT_FALSE(countLines(directory.pathOf("none"), goOn));
    EXPECT_EQ(-1, openRegularFile(fifo));
}

TEST(CountLines, aRegularFileThatCannotBeOpenedHasNone) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "x;y;z\n1;1;1\n");
    rlimit before{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
    // Root may open every file, so it is the number of open files that forbids it.
    const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    const int descriptor = openRegularFile(path);
    const auto count = countLines(path, goOn);
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &before));
    EXPECT_EQ(-1, descriptor);
    EXPECT_FALSE(count);
    EXPECT_EQ(1U, countLines(path, goOn)->nodeLines());
}

TEST(CountLines, aLinkToAFileIsThatFile) {
    const TemporaryDirectory directory;
    directory.write("a", "x;y;z\n1;1;1\n");
    EXPECT_EQ(1U, countLines(directory.makeLink("link", directory.pathOf("a")), goOn)->nodeLines());
}

TEST(CountLines, stopsWhenItIsTold) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(countLines(directory.write("a", "x;y;z\n"), true));
}

} // namespace vadelwatch
