#include "watch/run/message_log.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>
#include <unistd.h>

namespace vadelwatch {

using vadelclip::readFile;
using vadelclip::TemporaryDirectory;

TEST(LogLine, keepsMessageByteForByte) {
    const std::string line = R"({"type" : "progress", "percent":12.50 })";
    EXPECT_EQ("{\"seconds\":1.250000,\"message\":" + line + "}\n", logLine(1.25, line, parseMessage(line)));
}

TEST(LogLine, quotesLineThatIsNotJson) {
    EXPECT_EQ("{\"seconds\":0.000001,\"line\":\"a \\\"b\\\" \xEF\xBF\xBD\"}\n",
              logLine(0.000001, "a \"b\" \xFF", parseMessage("a \"b\" \xFF")));
}

TEST(MessageLog, writesLinesInOrder) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("log", "an older log");
    MessageLog log;
    ASSERT_EQ(0, log.open(path));
    log.add(0.5, "1", parseMessage("1"));
    log.add(1.0, "2", parseMessage("2"));
    EXPECT_EQ(0, log.close());
    EXPECT_EQ("{\"seconds\":0.500000,\"message\":1}\n{\"seconds\":1.000000,\"message\":2}\n", readFile(path));
}

TEST(MessageLog, dropsEverythingWithoutPath) {
    MessageLog log;
    EXPECT_EQ(0, log.open(""));
    log.add(1.0, "1", parseMessage("1"));
    EXPECT_EQ(0, log.close());
}

TEST(MessageLog, openReturnsErrno) {
    const TemporaryDirectory directory;
    MessageLog log;
    EXPECT_EQ(ENOENT, log.open(directory.pathOf("none/log")));
    EXPECT_EQ(EISDIR, MessageLog().open(directory.path()));
}

TEST(MessageLog, closeReturnsErrno) {
    const TemporaryDirectory directory;
    // The log gets the lowest free descriptor.
    const int descriptor = dup(STDIN_FILENO);
    ASSERT_EQ(0, close(descriptor));
    MessageLog log;
    ASSERT_EQ(0, log.open(directory.pathOf("log")));
    log.add(0.5, "1", parseMessage("1"));
    while (log.waitingBytes() > 0) {
        std::this_thread::yield();
    }
    // Its own close fails now, as on a file system that has found no space in the meantime.
    ASSERT_EQ(0, close(descriptor));
    EXPECT_EQ(EBADF, log.close());
}

TEST(MessageLog, closeReturnsFirstFailure) {
    MessageLog log;
    ASSERT_EQ(0, log.open("/dev/full"));
    log.add(0.5, "1", parseMessage("1"));
    EXPECT_EQ(ENOSPC, log.close());
}

TEST(MessageLog, destructorClosesFile) {
    const TemporaryDirectory directory;
    const int lowest = dup(STDIN_FILENO);
    ASSERT_EQ(0, close(lowest));
    {
        MessageLog log;
        ASSERT_EQ(0, log.open(directory.pathOf("log")));
    }
    EXPECT_EQ(lowest, dup(STDIN_FILENO));
    close(lowest);
}

} // namespace vadelwatch
