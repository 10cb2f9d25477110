#include "watch/run/run_watcher.hpp"

#include "app/standard_descriptors.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// Called after each `waitpid` of this process that has found no end.
std::function<void(pid_t pid)> afterWaitInVain; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

/// Replaces that of the C library, so that a test can act between the calls of the code under test.
extern "C" pid_t waitpid(pid_t pid, int* status, int options) {
    const pid_t ended = wait4(pid, status, options, nullptr);
    if (ended == 0 && afterWaitInVain) {
        afterWaitInVain(pid);
    }
    return ended;
}

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

namespace {

/// A tool that is watched without any output.
struct WatchedTool {
    RunRecord watch(const RunSignals& signals) {
        OwnOutput shown;
        OwnOutput log;
        ProgressDisplay display(
            ProgressMode::none, {}, [](std::string_view) {}, [] { return 80; });
        const NodeLineCount count;
        return RunWatcher(tool, display, shown, log, count, "/none").watch(signals);
    }

    ToolProcess tool;
};

} // namespace

TEST(RunWatcher, keepsSecondSignalThatFollowsTheEndOfTheTool) {
    vadelclip::guardStandardDescriptors();
    const TemporaryDirectory directory;
    const RunSignals signals;
    WatchedTool watched;
    ASSERT_EQ(0, watched.tool.start("/bin/sh", {"-c",
                                                "trap 'while [ ! -e \"$0\" ]; do sleep 0.01; done; exit 1' TERM; "
                                                "echo >&3; while :; do sleep 0.01; done",
                                                directory.pathOf("held")}));
    int callsInVain = 0;
    afterWaitInVain = [&](pid_t pid) {
        ++callsInVain;
        if (callsInVain == 1) {
            pollfd ready{watched.tool.channel(), POLLIN, 0};
            EXPECT_EQ(1, poll(&ready, 1, -1));
            kill(getpid(), SIGTERM);
        } else if (callsInVain == 2) {
            // The tool has received the first signal. It ends, and then the second signal arrives.
            static_cast<void>(directory.write("held", ""));
            siginfo_t end{};
            EXPECT_EQ(0, waitid(P_PID, static_cast<id_t>(pid), &end, WEXITED | WNOWAIT));
            kill(getpid(), SIGTERM);
        }
    };
    const RunRecord record = watched.watch(signals);
    afterWaitInVain = nullptr;
    EXPECT_EQ(2, callsInVain);
    EXPECT_EQ((ToolEnd{1, 0}), record.end);
    // It is pending, and would end the process when `signals` is destroyed.
    EXPECT_EQ(std::vector<int>{SIGTERM}, signals.takeEndingSignals());
}

TEST(RunWatcher, keepsSecondOfTwoSignalsAfterTheEndOfTheTool) {
    vadelclip::guardStandardDescriptors();
    const RunSignals signals;
    WatchedTool watched;
    ASSERT_EQ(0, watched.tool.start("/bin/true", {}));
    siginfo_t end{};
    ASSERT_EQ(0, waitid(P_ALL, 0, &end, WEXITED | WNOWAIT));
    kill(getpid(), SIGINT);
    kill(getpid(), SIGTERM);
    EXPECT_EQ(SIGINT, watched.watch(signals).interruptedBy);
    EXPECT_EQ(std::vector<int>{SIGTERM}, signals.takeEndingSignals());
}

} // namespace vadelwatch
