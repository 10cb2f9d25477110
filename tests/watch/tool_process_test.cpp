#include "watch/tool_process.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// All bytes of a descriptor that does not block, to its end.
std::string readAll(int descriptor) {
    std::string bytes;
    char block[4096];
    while (true) {
        pollfd state{descriptor, POLLIN, 0};
        poll(&state, 1, 10000);
        const ssize_t size = read(descriptor, block, sizeof block);
        if (size <= 0) {
            return bytes;
        }
        bytes.append(block, static_cast<std::size_t>(size));
    }
}

ToolEnd endOf(ToolProcess& process) {
    while (true) {
        if (const std::optional<ToolEnd> end = process.pollEnd()) {
            return *end;
        }
        usleep(1000);
    }
}

/// A shell with this script as the tool.
int startScript(ToolProcess& process, const std::string& script) {
    return process.start("/bin/sh", {"-c", script});
}

} // namespace

TEST(ToolProcess, channelAndConsoleAreKeptApart) {
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, "echo message >&3; echo console; echo error >&2; exit 1"));
    EXPECT_EQ("message\n", readAll(process.channel()));
    EXPECT_EQ("console\nerror\n", readAll(process.console()));
    EXPECT_EQ((ToolEnd{1, 0}), endOf(process));
    EXPECT_FALSE(process.pollEnd());
}

TEST(ToolProcess, noDescriptorOfOursIsInherited) {
    const std::string listPipes = "for fd in /proc/self/fd/*; do [ -p $fd ] && echo ${fd##*/}; done; true";
    std::string before;
    {
        // Whoever started the tests may have left us some.
        ToolProcess process;
        ASSERT_EQ(0, startScript(process, listPipes));
        before = readAll(process.console());
        endOf(process);
    }
    ToolProcess other;
    ASSERT_EQ(0, startScript(other, "exec sleep 60"));
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, listPipes));
    EXPECT_EQ(before, readAll(process.console()));
    endOf(process);
    other.forward(SIGKILL);
    EXPECT_EQ((ToolEnd{0, SIGKILL}), endOf(other));
}

TEST(ToolProcess, signalsActOnItThoughTheyWaitForUs) {
    sigset_t blocked;
    sigset_t former;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &former);
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, "exec sleep 60"));
    process.forward(SIGTERM);
    EXPECT_EQ((ToolEnd{0, SIGTERM}), endOf(process));
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    // It has been waited for: its number may belong to another process by now.
    process.forward(SIGTERM);
}

TEST(ToolProcess, whatCannotBeStartedSaysWhy) {
    const TemporaryDirectory directory;
    EXPECT_EQ(ENOENT, ToolProcess().start(directory.pathOf("none"), {}));
    const std::string plain = directory.write("plain", "text");
    chmod(plain.c_str(), 0600);
    EXPECT_EQ(EACCES, ToolProcess().start(plain, {}));
    EXPECT_EQ(EACCES, ToolProcess().start(directory.path(), {}));
}
