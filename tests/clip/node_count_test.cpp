#include "clip/node_count.hpp"

#include "support/catalogue_support.hpp"
#include "support/console_support.hpp"
#include "support/expected_calls_support.hpp"
#include "support/file_support.hpp"
#include "support/recording_messages.hpp"

#include <ProcessMessage.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The content of the file that a total leads to, in a fresh directory.
std::string written(std::int32_t totalKeptNodes) {
    const TemporaryDirectory directory;
    writeNodeCount(directory.path(), totalKeptNodes);
    const FileTree tree = directory.tree();
    EXPECT_EQ(1u, tree.size());
    return readFile(directory.pathOf("total_node_count.txt"));
}

/// Reads until a text has come, at most five seconds long, and gives what came.
std::string readUntil(int descriptor, const std::string& text) {
    std::string bytes;
    pollfd state{descriptor, POLLIN, 0};
    while (bytes.find(text) == std::string::npos && poll(&state, 1, 5000) == 1) {
        char block[256];
        const ssize_t count = read(descriptor, block, sizeof block);
        if (count <= 0) {
            break;
        }
        bytes.append(block, static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace

TEST(NodeCount, theFileHoldsTheNumberAndALineFeed) {
    EXPECT_EQ("0\n", written(0));
    EXPECT_EQ("3\n", written(3));
    EXPECT_EQ("1234567\n", written(1234567));
    EXPECT_EQ("2147483647\n", written(std::numeric_limits<std::int32_t>::max()));
    EXPECT_EQ("-2147483648\n", written(std::numeric_limits<std::int32_t>::min()));
}

TEST(NodeCount, theNumberHasNoGroupingInAnyLanguage) {
    for (const char* const name : {"de.utf8", "de_DE.utf8", "fr_FR.utf8", "ar_EG.utf8", ".utf8"}) {
        const GeneratedLocale generated(name);
        EXPECT_EQ("1234567\n", written(1234567)) << name;
        EXPECT_EQ("-2147483648\n", written(std::numeric_limits<std::int32_t>::min())) << name;
    }
}

TEST(NodeCount, theEndOfTheRunIsReported) {
    const TemporaryDirectory directory;
    clearRecordedCalls();
    ConsoleCapture console;
    writeNodeCount(directory.path(), 12);
    EXPECT_EQ(closingCalls(), recordedCalls());
    EXPECT_EQ("", console.text());
}

TEST(NodeCount, anExistingFileIsReplaced) {
    const TemporaryDirectory directory;
    directory.write("total_node_count.txt", "x;y;z\n1;2;3\n4;5;6\n");
    directory.write("other.txt", "stays");
    writeNodeCount(directory.path(), 2);
    EXPECT_EQ((FileTree{{"total_node_count.txt", "2\n"}, {"other.txt", "stays"}}), directory.tree());
}

TEST(NodeCount, aFileThatCannotBeOpenedGoesUnnoticed) {
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

TEST(NodeCount, aFileThatCannotBeWrittenGoesUnnoticed) {
    const TemporaryDirectory directory;
    directory.makeLink("total_node_count.txt", "/dev/full");
    clearRecordedCalls();
    ConsoleCapture console;
    writeNodeCount(directory.path(), 2);
    EXPECT_EQ(closingCalls(), recordedCalls());
    EXPECT_EQ("", console.text());
}

// The file is a FIFO here: opening it waits until this process opens it too, which it does once the report has come.
TEST(NodeCount, theReportComesBeforeTheFile) {
    const TemporaryDirectory directory;
    const std::string fifo = directory.pathOf("total_node_count.txt");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    int channel[2];
    ASSERT_EQ(0, pipe(channel));
    const pid_t child = fork();
    if (child == 0) {
        dup2(channel[1], 3);
        MessageSender::Instance(false);
        writeNodeCount(directory.path(), 2);
        _exit(0);
    }
    close(channel[1]);
    EXPECT_EQ("MessageSender 0\nProgressMessage 1 100 100\nOnProgress 100 false\nend ProgressMessage\n",
              readUntil(channel[0], "end ProgressMessage\n"));
    EXPECT_EQ("2\n", readFile(fifo));
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    close(channel[0]);
}
