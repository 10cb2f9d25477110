#include "clip/input_selection.hpp"

#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/file_support.hpp"
#include "support/recording_messages.hpp"
#include "text/text_mode.hpp"

#include <boost/filesystem/exception.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace vadelclip {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using LineCounts = std::map<std::string, std::int32_t>;

/// Returns the selection as a map from path (with slashes) to line count. Expects lists of equal size without repetition.
LineCounts select(const std::string& directory) {
    const InputSelection selection = selectInputFiles(directory);
    EXPECT_EQ(selection.inputFiles.size(), selection.lineCounts.size());
    LineCounts result;
    for (std::size_t i = 0; i < selection.inputFiles.size(); ++i) {
        std::string path = selection.inputFiles[i];
        std::replace(path.begin(), path.end(), joint, '/');
        EXPECT_TRUE(result.emplace(path, selection.lineCounts.at(i)).second);
    }
    return result;
}

/// The line count of a directory's only file.
std::int32_t lineCountOf(const std::string& content) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a.xyz", content);
    const LineCounts counts = select(directory.path());
    EXPECT_EQ(1u, counts.count(path));
    return counts.empty() ? -99 : counts.begin()->second;
}

std::string errorOfSelection(const std::string& directory) {
    try {
        selectInputFiles(directory);
        return "no error";
    } catch (const boost::filesystem::filesystem_error& error) {
        return error.what();
    }
}

void expectNothingReportedAndNothingWritten(const TemporaryDirectory& directory) {
    const FileTree before = directory.tree();
    clearRecordedCalls();
    ConsoleCapture console;
    select(directory.path());
    EXPECT_EQ("", console.text());
    EXPECT_THAT(recordedCalls(), IsEmpty());
    EXPECT_EQ(before, directory.tree());
}

} // namespace

TEST(InputSelection, acceptsThreeSuffixes) {
    const TemporaryDirectory directory;
    LineCounts expected;
    for (const char* const name : {"a.txt", "a.xyz", "a.csv", ".txt", ".hidden.csv", "a.b.xyz", "two words.txt",
                                   "a.txt.csv", "\xFF.txt", "-pipe.csv", "x.XYZ.xyz", "total_node_count.txt"}) {
        expected[directory.write(name, "x;y;z\n1;2;3\n")] = 1;
    }
    for (const char* const name : {"a", "atxt", "txt", "a.TXT", "a.Xyz", "a.CSV", "a.txt ", "a.txt.bak", "a.xyzg",
                                   "a.dat", "a.tx", "a.csv~", "a.xy", "csv", "a_txt", "a.asc", "xyz"}) {
        directory.write(name, "x;y;z\n1;2;3\n");
    }
    EXPECT_EQ(expected, select(directory.path()));
}

TEST(InputSelection, walksOneLevelDeep) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a.txt", "x;y;z\n");
    directory.write("below/b.txt", "x;y;z\n");
    directory.write("folder.txt/c.txt", "x;y;z\n");
    EXPECT_EQ((LineCounts{{path, 0}}), select(directory.path()));
}

TEST(InputSelection, selectsOnlyFilesWithHeader) {
    const TemporaryDirectory directory;
    const std::string good = directory.write("good.csv", "X\tY\tZ\tG\n1\t2\t3\t4\n");
    const std::string mark = directory.write("mark.csv", "\xEF\xBB\xBFx;y;z\n1;2;3\n1;2;3\n");
    const std::string carriageReturn = directory.write("cr.csv", "x;y;z\r\n1;2;3\r\n");
    directory.write("empty.csv", "");
    directory.write("blank-line-first.csv", "\nx;y;z\n1;2;3\n");
    directory.write("no-header.csv", "1;2;3\n4;5;6\n");
    directory.write("trailing-blank.csv", "x;y;z \n1;2;3\n");
    directory.write("two-carriage-returns.csv", "x;y;z\r\r\n1;2;3\n");
    directory.write("carriage-return-at-end.csv", "x;y;z\r");
    directory.write("mixed.csv", "x;y,z\n1;2;3\n");
    directory.write("total_node_count.txt", "12\n");
    EXPECT_EQ((LineCounts{{good, 1}, {mark, 2}, {carriageReturn, 1}}), select(directory.path()));
}

TEST(InputSelection, followsLinks) {
    const TemporaryDirectory directory;
    const TemporaryDirectory elsewhere;
    elsewhere.write("data.bin", "x;y;z\n1;2;3\n");
    const std::string link = directory.makeLink("link.txt", elsewhere.pathOf("data.bin"));
    directory.makeLink("directory.txt", elsewhere.path());
    directory.makeLink("dangling.txt", elsewhere.pathOf("missing"));
    directory.makeLink("suffix-of-the-target-only", elsewhere.write("b.txt", "x;y;z\n"));
    EXPECT_EQ((LineCounts{{link, 1}}), select(directory.path()));
}

TEST(InputSelection, keepsOrderOfDirectory) {
    const TemporaryDirectory directory;
    for (int i = 0; i < 40; ++i) {
        directory.write(std::to_string(i * 7919 % 101) + ".xyz",
                        "x;y;z\n" + std::string(static_cast<std::size_t>(i), '\n'));
    }
    std::vector<std::string> expected;
    std::vector<std::int32_t> expectedCounts;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        expected.push_back(entry.path().string());
        expectedCounts.push_back(static_cast<std::int32_t>(entry.file_size()) - 6);
    }
    const InputSelection selection = selectInputFiles(directory.path());
    EXPECT_EQ(expected, selection.inputFiles);
    EXPECT_EQ(expectedCounts, selection.lineCounts);
}

TEST(InputSelection, beginsPathsWithDirectoryAsGiven) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n");
    EXPECT_THAT(selectInputFiles(directory.path() + "/.").inputFiles,
                ElementsAre(directory.path() + "/." + joint + "a.txt"));
    EXPECT_THAT(selectInputFiles(directory.path() + "/").inputFiles, ElementsAre(directory.path() + joint + "a.txt"));
}

TEST(InputSelection, countsLineFeedsMinusOne) {
    EXPECT_EQ(-1, lineCountOf("x;y;z"));
    EXPECT_EQ(0, lineCountOf("x;y;z\n"));
    EXPECT_EQ(0, lineCountOf("x;y;z\n1;2;3"));
    EXPECT_EQ(1, lineCountOf("x;y;z\n1;2;3\n"));
    EXPECT_EQ(1, lineCountOf("x;y;z\n1;2;3\n4;5;6"));
    EXPECT_EQ(3, lineCountOf("x;y;z\n\n\n\n"));
    EXPECT_EQ(2, lineCountOf("x;y;z\r\n1;2;3\r\n4;5;6\r\n"));
    EXPECT_EQ(1, lineCountOf("x;y;z\n1;2;3\r4;5;6\r7;8;9\n"));
    EXPECT_EQ(2, lineCountOf(std::string("x;y;z\n\0\n\0\n\0", 11)));
    // The text mode of the platform may have an end-of-file character.
    EXPECT_EQ(platformHasTextMode ? 0 : 1, lineCountOf("x;y;z\n\x1A\n"));
    EXPECT_EQ(200000, lineCountOf("x;y;z\n" + std::string(200000, '\n')));
}

TEST(InputSelection, countsLinesAcrossBlockLimits) {
    for (const std::size_t size : {4095u, 4096u, 8191u, 8192u, 65535u, 65536u, 131072u}) {
        const std::string filling(size - 6, 'a');
        EXPECT_EQ(0, lineCountOf("x;y;z\n" + filling)) << size;
        EXPECT_EQ(1, lineCountOf("x;y;z\n" + filling + "\n")) << size;
        EXPECT_EQ(2, lineCountOf("x;y;z\n" + filling + "\n\n")) << size;
    }
}

TEST(InputSelection, countsMinusOneLineIfFileDisappears) {
    const TemporaryDirectory directory;
    const std::string path = directory.pathOf("a.txt");
    const ServedFile file(path, {{[&path] { std::filesystem::remove(path); }, "x;y;z\n1;2;3\n"}});
    EXPECT_EQ((LineCounts{{path, -1}}), select(directory.path()));
}

TEST(InputSelection, opensFileForHeaderAndForCount) {
    const TemporaryDirectory directory;
    const std::string path = directory.pathOf("a.txt");
    const ServedFile file(path, {{"x;y;z\n"}, {"other\ncontent\nby now\n"}});
    EXPECT_EQ((LineCounts{{path, 2}}), select(directory.path()));
}

TEST(InputSelection, doesNotOpenRejectedFileAgain) {
    const TemporaryDirectory directory;
    const ServedFile file(directory.pathOf("a.txt"), {{"y;x;z\n"}});
    EXPECT_EQ(LineCounts(), select(directory.path()));
}

TEST(InputSelection, doesNotOpenFileOfOtherSuffix) {
    const TemporaryDirectory directory;
    const ServedFile file(directory.pathOf("a.dat"), {});
    EXPECT_EQ(LineCounts(), select(directory.path()));
}

TEST(InputSelection, findsNothingAmongOtherEntries) {
    const TemporaryDirectory directory;
    EXPECT_EQ(LineCounts(), select(directory.path()));
    directory.write("below.txt/a.txt", "x;y;z\n");
    directory.write("readme.md", "x;y;z\n");
    EXPECT_EQ(LineCounts(), select(directory.path()));
}

TEST(InputSelection, reportsAndWritesNothing) {
    const TemporaryDirectory directory;
    directory.write("a.txt", "x;y;z\n1;2;3\n");
    directory.write("b.txt", "y;x;z\n");
    directory.write("c.txt", "x:y:z\n");
    expectNothingReportedAndNothingWritten(directory);
}

TEST(InputSelection, skipsDanglingLinkSilently) {
    const TemporaryDirectory directory;
    directory.makeLink("d.txt", "missing");
    expectNothingReportedAndNothingWritten(directory);
}

TEST(InputSelection, throwsIfWalkFails) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.txt", "x;y;z\n");
    EXPECT_THAT(errorOfSelection(directory.pathOf("missing")),
                StartsWith("boost::filesystem::directory_iterator::construct: "));
    EXPECT_THAT(errorOfSelection(file), StartsWith("boost::filesystem::directory_iterator::construct: "));
    EXPECT_THAT(errorOfSelection(""), StartsWith("boost::filesystem::directory_iterator::construct: "));
}

TEST(InputSelection, throwsIfStatusFailsForAnySuffix) {
    const TemporaryDirectory directory;
    directory.makeLink("loop.dat", "loop.dat");
    EXPECT_THAT(errorOfSelection(directory.path()), StartsWith("boost::filesystem::status: "));
}

TEST(LineCounts, wrapsSumAround) {
    constexpr std::int32_t largestCount = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t smallestCount = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(0, sumLineCounts({}));
    EXPECT_EQ(5, sumLineCounts({2, 0, 3}));
    EXPECT_EQ(1, sumLineCounts({3, -1, -1}));
    EXPECT_EQ(-2, sumLineCounts({-1, -1}));
    EXPECT_EQ(smallestCount, sumLineCounts({largestCount, 1}));
    EXPECT_EQ(largestCount, sumLineCounts({largestCount, 1, -1}));
    EXPECT_EQ(-2, sumLineCounts({largestCount, largestCount}));
    EXPECT_EQ(largestCount - 2, sumLineCounts({largestCount, largestCount, largestCount}));
}

} // namespace vadelclip
