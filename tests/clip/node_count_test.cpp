#include "clip/node_count.hpp"

#include "support/catalogue_support.hpp"
#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/file_support.hpp"
#include "support/recording_messages.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace vadelclip {

namespace {

/// Writes a count in a new directory and returns the content of the file.
std::string written(std::int32_t totalKeptNodes) {
    const TemporaryDirectory directory;
    writeNodeCount(directory.path(), totalKeptNodes);
    const FileTree tree = directory.tree();
    EXPECT_EQ(1u, tree.size());
    return withoutTextMode(readFile(directory.pathOf("total_node_count.txt")));
}

} // namespace

TEST(NodeCount, writesNumberAndLineFeed) {
    EXPECT_EQ("0\n", written(0));
    EXPECT_EQ("3\n", written(3));
    EXPECT_EQ("1234567\n", written(1234567));
    EXPECT_EQ("2147483647\n", written(std::numeric_limits<std::int32_t>::max()));
    EXPECT_EQ("-2147483648\n", written(std::numeric_limits<std::int32_t>::min()));
}

TEST(NodeCount, writesNoGroupingInAnyLanguage) {
    for (const char* const name : {"de.utf8", "de_DE.utf8", "fr_FR.utf8", "ar_EG.utf8", ".utf8"}) {
        const GeneratedLocale generated(name);
        EXPECT_EQ("1234567\n", written(1234567)) << name;
        EXPECT_EQ("-2147483648\n", written(std::numeric_limits<std::int32_t>::min())) << name;
    }
}

TEST(NodeCount, reportsEndOfRun) {
    const TemporaryDirectory directory;
    clearRecordedCalls();
    ConsoleCapture console;
    writeNodeCount(directory.path(), 12);
    EXPECT_EQ(closingCalls(), recordedCalls());
    EXPECT_EQ("", console.text());
}

TEST(NodeCount, replacesExistingFile) {
    const TemporaryDirectory directory;
    directory.write("total_node_count.txt", "x;y;z\n1;2;3\n4;5;6\n");
    directory.write("other.txt", "stays");
    writeNodeCount(directory.path(), 2);
    EXPECT_EQ((FileTree{{"total_node_count.txt", "2\n"}, {"other.txt", "stays"}}), withoutTextMode(directory.tree()));
}

TEST(NodeCount, ignoresFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    clearRecordedCalls();
    ConsoleCapture console;
    writeNodeCount(directory.pathOf("missing"), 2);
    directory.makeDirectory("total_node_count.txt");
    writeNodeCount(directory.path(), 2);
    EXPECT_EQ(joined({closingCalls(), closingCalls()}), recordedCalls());
    EXPECT_EQ("", console.text());
    EXPECT_EQ((FileTree{{"total_node_count.txt/", ""}}), directory.tree());
}

TEST(NodeCount, ignoresFileThatCannotBeWritten) {
    const TemporaryDirectory directory;
    directory.makeLink("total_node_count.txt", "/dev/full");
    clearRecordedCalls();
    ConsoleCapture console;
    writeNodeCount(directory.path(), 2);
    EXPECT_EQ(closingCalls(), recordedCalls());
    EXPECT_EQ("", console.text());
}

} // namespace vadelclip
