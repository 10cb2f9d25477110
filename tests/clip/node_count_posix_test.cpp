#include "clip/node_count.hpp"

#include "support/file_support.hpp"

#include <ProcessMessage.h>

#include <gtest/gtest.h>

#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vadelclip {

namespace {

/// Reads until a text has arrived, at most a minute, and returns the bytes.
std::string readUntil(int descriptor, const std::string& text) {
    std::string bytes;
    pollfd state{descriptor, POLLIN, 0};
    while (bytes.find(text) == std::string::npos && poll(&state, 1, 60000) == 1) {
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

// The file is a FIFO: opening it waits until this process opens it too, after it has received the report.
TEST(NodeCount, sendsReportBeforeWritingFile) {
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

} // namespace vadelclip
