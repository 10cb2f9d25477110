#include "watch/show/own_output.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <unistd.h>

namespace vadelwatch {

namespace {

/// A pipe whose ends block.
class BlockingPipe {
public:
    BlockingPipe() {
        guardOwnOutput();
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

    /// So many bytes; waits for them.
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

/// 'S' for one that sleeps, as one does that waits for room in a pipe.
char stateOfFirstThread() {
    std::ifstream file("/proc/self/stat");
    std::string text;
    std::getline(file, text);
    // The name of the program stands in front, and may hold anything.
    const std::size_t name = text.rfind(')');
    return name == std::string::npos ? '?' : text.at(name + 2);
}

/// No two stretches of it are alike.
std::string countedText(std::size_t numbers) {
    std::string text;
    for (std::size_t i = 0; i < numbers; ++i) {
        text += std::to_string(i) + "\n";
    }
    return text;
}

double secondsOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

TEST(OwnOutput, aReaderThatDoesNotReadIsNotWaitedFor) {
    const BlockingPipe pipe;
    OwnOutput output(pipe.writing());
    const std::string text = countedText(100000);
    output.keep(text);
    EXPECT_EQ(pipe.writing(), output.waitingDescriptor());
    // The pipe has room, so the write is begun; it would last for ever.
    EXPECT_LT(secondsOf([&output] { output.writeWhatFits(); }), 2.0);
    const std::size_t waiting = output.waitingBytes();
    EXPECT_GT(waiting, 0U);
    EXPECT_LT(waiting, text.size());
    output.writeWhatFits();
    EXPECT_EQ(waiting, output.waitingBytes());
}

TEST(OwnOutput, whatWaitsIsWrittenInItsOrderAndOnce) {
    const BlockingPipe pipe;
    OwnOutput output(pipe.writing());
    const std::string text = countedText(100000);
    std::string received;
    std::size_t given = 0;
    while (received.size() < text.size()) {
        const std::size_t piece = std::min<std::size_t>(50000, text.size() - given);
        output.keep(text.substr(given, piece));
        given += piece;
        output.writeWhatFits();
        received += pipe.read(std::min<std::size_t>(10000, given - output.waitingBytes() - received.size()));
    }
    EXPECT_TRUE(text == received);
    EXPECT_EQ(0U, output.waitingBytes());
    EXPECT_EQ(-1, output.waitingDescriptor());
}

TEST(OwnOutput, aWriteWaitsForASlowReaderAndComesBehindWhatWasKept) {
    for (const bool blocking : {true, false}) {
        const BlockingPipe pipe;
        fcntl(pipe.writing(), F_SETFL, O_WRONLY | (blocking ? 0 : O_NONBLOCK));
        OwnOutput output(pipe.writing());
        const std::string text = countedText(100000);
        std::string received;
        std::thread reader([&pipe, &received, &text] {
            // Slow for certain: it begins once the writer, the first thread of the process, has found the pipe full.
            while (stateOfFirstThread() != 'S') {
                std::this_thread::yield();
            }
            received = pipe.read(text.size() + 4);
        });
        output.keep(text);
        output.write("end\n");
        reader.join();
        EXPECT_TRUE(text + "end\n" == received);
        EXPECT_EQ(0, output.failure());
    }
}

TEST(OwnOutput, aReaderThatWentAwayIsTheEndOfIt) {
    BlockingPipe pipe;
    pipe.closeReading();
    OwnOutput output(pipe.writing());
    output.keep("a");
    output.writeWhatFits();
    EXPECT_EQ(EPIPE, output.failure());
    EXPECT_TRUE(output.readerHasGone());
    output.write("b");
    EXPECT_EQ(0U, output.waitingBytes());
}

TEST(OwnOutput, aTerminalThatWasClosedHasNoReaderAnyMore) {
    guardOwnOutput();
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

TEST(OwnOutput, theFirstFailureIsRemembered) {
    guardOwnOutput();
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

TEST(OwnOutput, withoutADescriptorEverythingIsDropped) {
    OwnOutput output(-1);
    output.keep("a");
    output.write("b");
    EXPECT_EQ(0U, output.waitingBytes());
    EXPECT_EQ(0, output.failure());
}

} // namespace vadelwatch
