#include "watch/check/output_check.hpp"

#include "watch/check/output_difference.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <vector>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

Lines differenceAt(const std::string& directory, std::size_t rejectedHeaders = 0) {
    const NodeFiles none;
    return describeDifference(findDifference(checkOutput(directory), {none, rejectedHeaders, directory}));
}

Lines differenceIn(const TemporaryDirectory& directory, std::size_t rejectedHeaders = 0) {
    return differenceAt(directory.path(), rejectedHeaders);
}

} // namespace

TEST(OutputCheck, headersDoNotCount) {
    const TemporaryDirectory directory;
    directory.write("a.xyz", "x;y;z\n1;1;1\n2;2;2\n");
    directory.write("b.txt", "x y z\n1 1 1\n");
    directory.write("total_node_count.txt", "3\n");
    directory.write("deep/c.txt", "not looked at\n\n\n");
    const OutputCheck check = checkOutput(directory.path());
    EXPECT_TRUE(check.addsUp);
    EXPECT_EQ(3U, check.nodeLines);
    EXPECT_EQ(3, check.nodeCount);
    EXPECT_EQ(2U, check.files.size());
    EXPECT_TRUE(differenceIn(directory).empty());
}

TEST(OutputCheck, showsShareOfBytesRead) {
    const TemporaryDirectory directory;
    directory.write("a.xyz", std::string(1499, '1') + '\n');
    directory.write("b.txt", std::string(499, '1') + '\n');
    directory.write("total_node_count.txt", "3\n");
    std::vector<double> shown;
    checkOutput(directory.path(), [&shown](double percent) { shown.push_back(percent); });
    ASSERT_EQ(2U, shown.size());
    EXPECT_TRUE(shown.front() == 75.0 || shown.front() == 25.0) << shown.front();
    EXPECT_EQ(100.0, shown.back());
}

TEST(OutputCheck, addsUpWithoutKeptNodes) {
    const TemporaryDirectory directory;
    directory.write("total_node_count.txt", "0\n");
    EXPECT_TRUE(checkOutput(directory.path()).addsUp);
}

TEST(OutputCheck, namesEveryIncompleteFile) {
    const TemporaryDirectory directory;
    directory.write("whole.txt", "x;y;z\n1;1;1\n");
    directory.write("empty.txt", "");
    directory.write("cut.txt", "x;y;z\n1;1;1\n2;2");
    directory.write("cutHeader.txt", "x;y");
    directory.write("header.txt", "x;y;z\n");
    directory.makeLink("link.txt", "/dev/full");
    ASSERT_EQ(0, mkfifo(directory.pathOf("pipe.txt").c_str(), 0600));
    directory.write("total_node_count.txt", "2345\n");
    EXPECT_EQ((std::vector<std::string>{
                  "Vadelwatch: nodes in the output files: 2, in total_node_count.txt: 2 345, missing: 2 343.",
                  "  cut.txt: its last line is cut off, 1 whole nodes before it",
                  "  cutHeader.txt: its last line is cut off, 0 whole nodes before it",
                  "  empty.txt: empty, even its header is missing",
                  "  header.txt: a header and no node; Vadelclip leaves no such file",
                  "  link.txt: not a regular file, its lines cannot be counted",
                  "  pipe.txt: not a regular file, its lines cannot be counted",
                  "  node files that lost the header during the run: 1; Vadelclip adds 1 to the count for each and "
                  "writes no line"}),
              differenceIn(directory, 1));
}

TEST(OutputCheck, reportsThatEveryFileLooksWhole) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n1;1;1\n");
    directory.write("total_node_count.txt", "3\n");
    EXPECT_EQ((Lines{"Vadelwatch: nodes in the output files: 1, in total_node_count.txt: 3, missing: 2.",
                     "  Every file looks whole, so the file with the difference is unknown."}),
              differenceIn(directory));
}

TEST(OutputCheck, unreadableDirectoryBlamesNoFile) {
    const TemporaryDirectory directory;
    EXPECT_EQ(Lines{"Vadelwatch: the output directory " + directory.pathOf("none") +
                    " cannot be read: No such file or directory"},
              differenceAt(directory.pathOf("none")));
    const std::string file = directory.write("file", "");
    EXPECT_EQ(Lines{"Vadelwatch: the output directory " + file + " cannot be read: Not a directory"},
              differenceAt(file));
}

TEST(OutputCheck, reportsThatThereIsNoFile) {
    const TemporaryDirectory directory;
    directory.write("total_node_count.txt", "3\n");
    EXPECT_EQ((Lines{"Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 3, missing: 3.",
                     "  There is no output file."}),
              differenceIn(directory));
}

TEST(OutputCheck, missingCountBlamesNoFile) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n1;1;1\n");
    EXPECT_EQ(Lines{"Vadelwatch: nodes in the output files: 1. There is no total_node_count.txt to compare with."},
              differenceIn(directory));
    directory.write("total_node_count.txt", "one\n");
    EXPECT_EQ(Lines{"Vadelwatch: nodes in the output files: 1. total_node_count.txt holds no number to compare with."},
              differenceIn(directory));
}

TEST(OutputCheck, uncountedFileNeverAddsUp) {
    const TemporaryDirectory directory;
    directory.makeLink("link.txt", "/dev/full");
    directory.write("total_node_count.txt", "0\n");
    EXPECT_FALSE(checkOutput(directory.path()).addsUp);
}

TEST(OutputCheck, countFileHoldsOneNumberAndLineFeed) {
    for (const char* const content : {"", "\n", "1", "1 \n", "1\n\n", "one\n", "1;\n"}) {
        const TemporaryDirectory directory;
        directory.write("total_node_count.txt", content);
        EXPECT_FALSE(checkOutput(directory.path()).nodeCount) << content;
        EXPECT_FALSE(checkOutput(directory.path()).addsUp) << content;
    }
    EXPECT_FALSE(checkOutput("/none/there").addsUp);
}

TEST(OutputCheck, compares32BitNumbers) {
    OutputCheck check;
    check.nodeLines = 4294967296ULL + 5;
    check.nodeCount = 5;
    EXPECT_EQ(0, check.missingNodes());
    check.nodeLines = 2147483648ULL;
    check.nodeCount = -2147483648LL;
    EXPECT_EQ(0, check.missingNodes());
    check.nodeCount = -2147483647LL;
    EXPECT_EQ(1, check.missingNodes());
    check.nodeLines = 7;
    check.nodeCount = 5;
    EXPECT_EQ(-2, check.missingNodes());
}

} // namespace vadelwatch
