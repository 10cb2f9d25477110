#include "watch/show/own_output.hpp"

#include "app/standard_descriptors.hpp"
#include "support/file_support.hpp"
#include "watch/run/run_signals.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vadelwatch {

using vadelclip::readFile;
using vadelclip::TemporaryDirectory;

namespace {

/// A pipe with blocking ends.
class BlockingPipe {
public:
    BlockingPipe() {
        vadelclip::guardStandardDescriptors();
        EXPECT_EQ(0, pipe2(ends.data(), O_CLOEXEC));
    }
    BlockingPipe(const BlockingPipe&) = delete;
    BlockingPipe& operator=(const BlockingPipe&) = delete;
    ~BlockingPipe() {
        closeReading();
        close(ends[1]);
    }

    int writing() const { return ends[1]; }

    void closeReading() {
        if (ends[0] != -1) {
            close(ends[0]);
            ends[0] = -1;
        }
    }

    void waitForBytes() const {
        pollfd state{ends[0], POLLIN, 0};
        EXPECT_EQ(1, poll(&state, 1, -1));
    }

    /// Waits for this number of bytes.
    std::string read(std::size_t size) const {
        std::string bytes;
        std::array<char, 4096> block{};
        while (bytes.size() < size) {
            const ssize_t received = ::read(ends[0], block.data(), std::min(block.size(), size - bytes.size()));
            if (received <= 0) {
                break;
            }
            bytes.append(block.data(), static_cast<std::size_t>(received));
        }
        return bytes;
    }

private:
    std::array<int, 2> ends{-1, -1};
};

/// Returns 'S' for a thread that sleeps, for example because it waits for space in a pipe.
char stateOfFirstThread() {
    // Not /proc/self/stat: in it, QEMU shows every process as running.
    std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/stat");
    std::string text;
    std::getline(file, text);
    // The name of the program is before it and may contain any byte.
    const std::size_t name = text.rfind(')');
    return name == std::string::npos ? '?' : text.at(name + 2);
}

/// Returns a text without repetitions.
std::string countedText(std::size_t numbers) {
    std::string text;
    for (std::size_t i = 0; i < numbers; ++i) {
        text += std::to_string(i) + "\n";
    }
    return text;
}

} // namespace

TEST(OwnOutput, keepDoesNotWaitForReader) {
    const BlockingPipe pipe;
    const std::string text = countedText(100000);
    OwnOutput output(pipe.writing());
    output.keep(text);
    EXPECT_EQ(text.size(), output.waitingBytes());
    EXPECT_TRUE(text == pipe.read(text.size()));
}

TEST(OwnOutput, writesKeptTextsOnceAndInOrder) {
    const BlockingPipe pipe;
    const std::string text = countedText(100000);
    OwnOutput output(pipe.writing());
    std::string received;
    for (std::size_t given = 0; given < text.size(); given += 50000) {
        output.keep(text.substr(given, 50000));
        received += pipe.read(10000);
    }
    received += pipe.read(text.size() - received.size());
    EXPECT_TRUE(text == received);
    output.write({});
    EXPECT_EQ(0U, output.waitingBytes());
}

TEST(OwnOutput, writeWaitsForSlowReaderAndFollowsKeptText) {
    const std::string text = countedText(100000);
    struct Case {
        std::string kept;
        std::string written;
    };
    for (const Case& each : {Case{text, "end\n"}, Case{"", text + "end\n"}, Case{text + "end\n", ""}}) {
        for (const int blocking : {0, O_NONBLOCK}) {
            const BlockingPipe pipe;
            fcntl(pipe.writing(), F_SETFL, O_WRONLY | blocking);
            OwnOutput output(pipe.writing());
            output.keep(each.kept);
            // Then the thread is writing.
            if (!each.kept.empty()) {
                pipe.waitForBytes();
            }
            std::string received;
            std::thread reader([&pipe, &received, &text] {
                // Certainly slow: it starts when the first thread of the process waits.
                while (stateOfFirstThread() != 'S') {
                    std::this_thread::yield();
                }
                received = pipe.read(text.size() + 4);
            });
            output.write(each.written);
            EXPECT_EQ(0U, output.waitingBytes());
            reader.join();
            EXPECT_TRUE(text + "end\n" == received);
            EXPECT_EQ(0, output.failure());
        }
    }
}

TEST(OwnOutput, signalsReachTheCallerWhileThreadIsBlocked) {
    const RunSignals signals;
    const BlockingPipe pipe;
    const std::string text = countedText(100000);
    OwnOutput output(pipe.writing());
    output.keep(text);
    // Would end the process if the thread received it.
    ASSERT_EQ(0, kill(getpid(), SIGTERM));
    pollfd state{signals.descriptor(), POLLIN, 0};
    EXPECT_EQ(1, poll(&state, 1, -1));
    EXPECT_EQ(std::vector<int>{SIGTERM}, signals.takeEndingSignals());
    EXPECT_TRUE(text == pipe.read(text.size()));
}

TEST(OwnOutput, destructorWritesKeptText) {
    const BlockingPipe pipe;
    OwnOutput(pipe.writing()).keep("a");
    EXPECT_EQ("a", pipe.read(1));
}

TEST(OwnOutput, dropsTextsAfterReaderHasGone) {
    BlockingPipe pipe;
    pipe.closeReading();
    OwnOutput output(pipe.writing());
    output.keep("a");
    output.write("b");
    EXPECT_EQ(EPIPE, output.failure());
    EXPECT_TRUE(output.readerHasGone());
    output.keep("c");
    EXPECT_EQ(0U, output.waitingBytes());
}

TEST(OwnOutput, closedTerminalHasNoReader) {
    vadelclip::guardStandardDescriptors();
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_NE(-1, master);
    ASSERT_EQ(0, grantpt(master));
    ASSERT_EQ(0, unlockpt(master));
    const int terminal = open(ptsname(master), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    ASSERT_NE(-1, terminal);
    close(master);
    OwnOutput output(terminal);
    output.write("a");
    EXPECT_EQ(EIO, output.failure());
    EXPECT_TRUE(output.readerHasGone());
    close(terminal);
}

TEST(OwnOutput, remembersFirstFailure) {
    vadelclip::guardStandardDescriptors();
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_NE(-1, full);
    OwnOutput output(full);
    output.write("a");
    EXPECT_EQ(ENOSPC, output.failure());
    EXPECT_FALSE(output.readerHasGone());
    close(full);
    output.write("b");
    EXPECT_EQ(ENOSPC, output.failure());
}

TEST(OwnOutput, dropsEveryTextWithoutDescriptor) {
    OwnOutput output(-1);
    output.keep("a");
    output.write("b");
    EXPECT_EQ(0U, output.waitingBytes());
    EXPECT_EQ(0, output.failure());
}

TEST(OwnOutput, replacesFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("log", "an older log");
    OwnOutput output;
    ASSERT_EQ(0, output.open(path));
    output.keep("1\n");
    output.keep("2\n");
    EXPECT_EQ(0, output.close());
    EXPECT_EQ("1\n2\n", readFile(path));
    EXPECT_EQ(0, output.close());
}

TEST(OwnOutput, openReturnsErrno) {
    const TemporaryDirectory directory;
    OwnOutput output;
    EXPECT_EQ(ENOENT, output.open(directory.pathOf("none/log")));
    EXPECT_EQ(EISDIR, output.open(directory.path()));
    output.write("a");
    EXPECT_EQ(0, output.close());
}

TEST(OwnOutput, closeReturnsErrno) {
    const TemporaryDirectory directory;
    // The file gets the lowest free descriptor.
    const int descriptor = dup(STDIN_FILENO);
    ASSERT_EQ(0, close(descriptor));
    OwnOutput output;
    ASSERT_EQ(0, output.open(directory.pathOf("log")));
    output.write("a");
    // Its own close fails now, as on a file system that has found no space in the meantime.
    ASSERT_EQ(0, close(descriptor));
    EXPECT_EQ(EBADF, output.close());
}

TEST(OwnOutput, closeReturnsFirstFailure) {
    OwnOutput output;
    ASSERT_EQ(0, output.open("/dev/full"));
    output.keep("a");
    EXPECT_EQ(ENOSPC, output.close());
}

TEST(OwnOutput, destructorClosesFile) {
    const TemporaryDirectory directory;
    const int lowest = dup(STDIN_FILENO);
    ASSERT_EQ(0, close(lowest));
    {
        OwnOutput output;
        ASSERT_EQ(0, output.open(directory.pathOf("log")));
    }
    EXPECT_EQ(lowest, dup(STDIN_FILENO));
    close(lowest);
}

} // namespace vadelwatch
