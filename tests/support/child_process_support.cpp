#include "support/child_process_support.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vadelclip {

namespace {

constexpr int channelDescriptor = 3;
constexpr unsigned int timeLimitInSeconds = 60;

/// Lower than the descriptor that the layer uses, higher than those that a test function opens.
constexpr int asideDescriptor = 40;

struct Channel {
    int readEnd = -1;
    int writeEnd = -1;
};

Channel openPipe() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, pipe(ends));
    return {ends[0], ends[1]};
}

Channel openPacketSocket() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends));
    return {ends[0], ends[1]};
}

[[noreturn]] void runInChild(Channel channel, const std::function<void()>& inChild,
                             const std::function<void(int)>& inChildWithAside) {
    alarm(timeLimitInSeconds);
    const int aside = fcntl(channel.writeEnd, F_DUPFD, asideDescriptor);
    // One end of the channel may have the number 3.
    close(channel.readEnd);
    close(channel.writeEnd);
    if (dup2(aside, channelDescriptor) != channelDescriptor) {
        std::abort();
    }
    if (inChildWithAside) {
        inChildWithAside(aside);
    } else {
        close(aside);
        inChild();
    }
    _exit(0);
}

std::string readAll(int descriptor, const std::string& endOfRead) {
    std::vector<char> block(1 << 16);
    std::string result;
    for (ssize_t count = 0; (count = read(descriptor, block.data(), block.size())) > 0;) {
        result.append(block.data(), static_cast<std::size_t>(count));
        result += endOfRead;
    }
    return result;
}

int waitFor(pid_t child) {
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

ChildOutcome run(Channel channel, const std::function<void()>& inChild,
                 const std::function<void(int)>& inChildWithAside, Reader reader, const std::string& endOfRead) {
    // Without this, a child that calls exit() also writes what is buffered here.
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        runInChild(channel, inChild, inChildWithAside);
    }
    close(channel.writeEnd);
    if (reader == Reader::slow) {
        // The channel is full after this time.
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ChildOutcome outcome;
    outcome.output = readAll(channel.readEnd, endOfRead);
    close(channel.readEnd);
    outcome.status = waitFor(child);
    return outcome;
}

} // namespace

std::ostream& operator<<(std::ostream& output, const ChildOutcome& outcome) {
    return output << "status " << outcome.status << "\n" << outcome.output;
}

ChildOutcome runWithPipe(const std::function<void()>& inChild, Reader reader) {
    return run(openPipe(), inChild, nullptr, reader, "");
}

ChildOutcome runWithPipe(const std::function<void(int)>& inChild, Reader reader) {
    return run(openPipe(), nullptr, inChild, reader, "");
}

ChildOutcome runWithPackets(const std::function<void()>& inChild) {
    return run(openPacketSocket(), inChild, nullptr, Reader::prompt, "|");
}

bool sameFile(int firstDescriptor, int secondDescriptor) {
    struct stat first {};
    struct stat second {};
    return fstat(firstDescriptor, &first) == 0 && fstat(secondDescriptor, &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

} // namespace vadelclip
