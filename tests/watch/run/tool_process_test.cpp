#include "watch/run/tool_process.hpp"

#include "process/child_process.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

/// Reads a non-blocking descriptor to its end.
std::string readAll(int descriptor) {
    std::string bytes;
    char block[4096];
    while (true) {
        pollfd state{descriptor, POLLIN, 0};
        poll(&state, 1, -1);
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

/// Starts a shell with this script as the tool.
int startScript(ToolProcess& process, const std::string& script) {
    return process.start("/bin/sh", {"-c", script});
}

/// Limits the number of descriptors of this process during its lifetime.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t most) {
        getrlimit(RLIMIT_NOFILE, &former);
        const rlimit limit{most, former.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &former); }

private:
    rlimit former{};
};

/// Sets the action of a signal and restores it at the end of the scope.
class Disposition {
public:
    Disposition(int signalNumber, void (*handler)(int)) : number(signalNumber) {
        struct sigaction action {};
        action.sa_handler = handler;
        sigaction(number, &action, &former);
    }
    Disposition(const Disposition&) = delete;
    Disposition& operator=(const Disposition&) = delete;
    ~Disposition() { sigaction(number, &former, nullptr); }

private:
    int number;
    struct sigaction former {};
};

} // namespace

TEST(ToolProcess, separatesChannelAndConsole) {
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, "echo message >&3; echo console; echo error >&2; exit 1"));
    EXPECT_EQ("message\n", readAll(process.channel()));
    EXPECT_EQ("console\nerror\n", readAll(process.console()));
    EXPECT_EQ((ToolEnd{1, 0}), endOf(process));
    EXPECT_FALSE(process.pollEnd());
}

TEST(ToolProcess, inheritsNoOtherDescriptor) {
    const std::string listPipes = "for fd in /proc/self/fd/*; do [ -p $fd ] && echo ${fd##*/}; done; true";
    std::string before;
    {
        // The parent process may have passed some on.
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

TEST(ToolProcess, knowsBytesReadAndOpenFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("höhe 1", std::string(100000, 'x'));
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, "cat '" + path + "' >/dev/null; exec 7<'" + path +
                                          "'; echo >&3; read -r line <&7"
                                          "; kill -STOP $$; exit"));
    pollfd state{process.channel(), POLLIN, 0};
    ASSERT_EQ(1, poll(&state, 1, -1));
    EXPECT_EQ("höhe 1", process.openFileIn(std::filesystem::canonical(directory.path()).string()));
    EXPECT_EQ("", process.openFileIn("/none"));
    // `cat` is a child that has ended, and the shell has waited for it.
    EXPECT_GT(process.bytesRead(), 100000U);
    process.forward(SIGKILL);
    endOf(process);
    EXPECT_EQ(0U, process.bytesRead());
    EXPECT_EQ("", process.openFileIn("/none"));
}

TEST(ToolProcess, signalsBlockedHereReachTheTool) {
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
    // Has no effect: the number may belong to another process now.
    process.forward(SIGTERM);
}

TEST(ToolProcess, startReturnsErrno) {
    const TemporaryDirectory directory;
    EXPECT_EQ(ENOENT, ToolProcess().start(directory.pathOf("none"), {}));
    const std::string plain = directory.write("plain", "text");
    chmod(plain.c_str(), 0600);
    EXPECT_EQ(EACCES, ToolProcess().start(plain, {}));
    EXPECT_EQ(EACCES, ToolProcess().start(directory.path(), {}));
}

TEST(ToolProcess, startFailsWithoutDescriptors) {
    const int lowest = dup(STDIN_FILENO);
    close(lowest);
    // From too few for one pipe to too few for the last of five ends, whose numbers start at ten.
    for (rlim_t most = static_cast<rlim_t>(lowest); most < 15; ++most) {
        const DescriptorLimit limit(most);
        ToolProcess process;
        EXPECT_EQ(EMFILE, startScript(process, "true")) << most;
    }
    const int next = dup(STDIN_FILENO);
    close(next);
    EXPECT_EQ(lowest, next);
}

TEST(ChildProcess, startFailsWithoutDescriptorsForItsFailurePipe) {
    const int lowest = dup(STDIN_FILENO);
    close(lowest);
    // Too few for the pipe, and too few to move one of its ends to ten.
    for (const rlim_t most : {static_cast<rlim_t>(lowest) + 1, static_cast<rlim_t>(lowest) + 2}) {
        const DescriptorLimit limit(most);
        pid_t pid = -1;
        EXPECT_EQ(EMFILE, vadelclip::startChild("/bin/true", {}, {}, pid)) << most;
        EXPECT_EQ(-1, pid);
    }
    const int next = dup(STDIN_FILENO);
    close(next);
    EXPECT_EQ(lowest, next);
}

TEST(ToolProcess, destructorEndsTool) {
    int channel = -1;
    {
        ToolProcess process;
        ASSERT_EQ(0, startScript(process, "exec sleep 60"));
        channel = dup(process.channel());
    }
    EXPECT_EQ("", readAll(channel));
    close(channel);
    EXPECT_EQ(-1, waitpid(-1, nullptr, 0));
    EXPECT_EQ(ECHILD, errno);
}

TEST(ToolProcess, continuesInterruptedWait) {
    const Disposition alarm(SIGALRM, [](int) {});
    {
        ToolProcess process;
        ASSERT_EQ(0,
                  startScript(process, "trap 'sleep 0.3; exit' TERM; echo ready >&3; while true; do sleep 0.01; done"));
        pollfd state{process.channel(), POLLIN, 0};
        ASSERT_EQ(1, poll(&state, 1, -1));
        const itimerval soon{{0, 20000}, {0, 20000}};
        setitimer(ITIMER_REAL, &soon, nullptr);
    }
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
    EXPECT_EQ(ECHILD, errno);
}

TEST(ToolProcess, lostStatusIsNotWaitedFor) {
    const Disposition vanishing(SIGCHLD, SIG_IGN);
    ToolProcess process;
    ASSERT_EQ(0, startScript(process, "exec sleep 60"));
}

} // namespace vadelwatch
