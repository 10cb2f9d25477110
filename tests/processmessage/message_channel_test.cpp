#include "processmessage/message_channel.hpp"

#include "app/standard_descriptors.hpp"
#include "support/child_process_support.hpp"
#include "support/sending.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <numeric>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace vadelclip {

// Descriptors, readers and disks that the message layer writes to. Each test runs in a new process.

namespace {

/// The descriptor numbers after the channel's.
const std::vector<int> laterDescriptors = [] {
    std::vector<int> numbers(1000);
    std::iota(numbers.begin(), numbers.end(), 4);
    return numbers;
}();

} // namespace

TEST(MessageChannel, writesNothingToAClosedDescriptor) {
    const ChildOutcome outcome = runWithPipe([](int aside) {
        close(3);
        MessageSender::Instance(true);
        // A file of the tool gets the number of the channel.
        if (dup(aside) != 3) {
            std::abort();
        }
        sendError("must not arrive");
        walkRange(0.0, 100.0, 10, 10);
    });
    EXPECT_EQ((ChildOutcome{0, ""}), outcome);
}

TEST(MessageChannel, writesNothingToAReadOnlyDescriptor) {
    const ChildOutcome outcome = runWithPipe([](int aside) {
        const int readOnly = open("/dev/zero", O_RDONLY);
        dup2(readOnly, 3);
        close(readOnly);
        MessageSender::Instance(true);
        const bool duplicated = std::any_of(laterDescriptors.begin(), laterDescriptors.end(),
                                            [](int descriptor) { return sameFile(3, descriptor); });
        dup2(aside, 3);
        sendError("must not arrive");
        mark(duplicated ? "duplicated" : "left alone");
    });
    EXPECT_EQ((ChildOutcome{0, "-- left alone\n"}), outcome);
}

TEST(MessageChannel, noFileOfTheToolBecomesTheChannel) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, 3);
        sendError("still there");
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("still there")}), outcome);
}

TEST(MessageChannel, usesAHighDescriptorThatNoProgramInherits) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        std::string found;
        for (const int descriptor : laterDescriptors) {
            if (sameFile(3, descriptor)) {
                found += descriptor < 64 ? "low" : "high";
                found += (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0 ? " closed on exec" : " inherited";
            }
        }
        mark(found);
    });
    EXPECT_EQ((ChildOutcome{0, "-- high closed on exec\n"}), outcome);
}

TEST(MessageChannel, worksWithALowLimitOfOpenFiles) {
    const ChildOutcome outcome = runWithPipe([] {
        const rlimit limit{32, 32};
        setrlimit(RLIMIT_NOFILE, &limit);
        MessageSender::Instance(true);
        sendError("a");
        if (open("/dev/null", O_RDONLY) == 3) {
            std::abort();
        }
        sendError("b");
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("a") + errorLineOf("b")}), outcome);
}

TEST(MessageChannel, missingReaderSilencesOnlyTheChannel) {
    for (const bool pipeMode : {true, false}) {
        const ChildOutcome outcome = runWithPipe([pipeMode](int aside) {
            int ends[2];
            if (pipe(ends) != 0) {
                std::abort();
            }
            dup2(ends[1], 3);
            close(ends[1]);
            guardStandardDescriptors();
            MessageSender::Instance(pipeMode);
            sendError("read");
            char bytes[200];
            const ssize_t count = pipeMode ? read(ends[0], bytes, sizeof bytes) : 0;
            close(ends[0]);
            sendError("not read");
            walkRange(0.0, 100.0, 10, 10);
            sendError("not read");
            if (write(aside, bytes, static_cast<std::size_t>(count)) != count) {
                std::abort();
            }
        });
        EXPECT_EQ((ChildOutcome{0, pipeMode ? errorLineOf("read") : ""}), outcome);
    }
}

TEST(MessageChannel, failedWriteSilencesTheChannelForGood) {
    const ChildOutcome outcome = runWithPipe([](int aside) {
        // A file that may contain only one line: the second write fails. The third would succeed after the limit is
        // removed.
        std::FILE* const file = std::tmpfile();
        dup2(fileno(file), 3);
        signal(SIGXFSZ, SIG_IGN);
        MessageSender::Instance(true);
        sendError("a");
        const off_t lineSize = lseek(3, 0, SEEK_END);
        rlimit original{};
        getrlimit(RLIMIT_FSIZE, &original);
        const rlimit limit{static_cast<rlim_t>(lineSize), original.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        sendError("b");
        setrlimit(RLIMIT_FSIZE, &original);
        sendError("c");
        char bytes[1000];
        const ssize_t count = pread(3, bytes, sizeof bytes, 0);
        if (write(aside, bytes, static_cast<std::size_t>(count)) != count) {
            std::abort();
        }
    });
    EXPECT_EQ((ChildOutcome{0, errorLineOf("a")}), outcome);
}

TEST(MessageChannel, waitsForASlowReader) {
    for (const bool blocking : {true, false}) {
        const ChildOutcome outcome = runWithPipe(
            [blocking] {
                fcntl(3, F_SETFL, blocking ? O_WRONLY : O_WRONLY | O_NONBLOCK);
                MessageSender::Instance(true);
                for (int i = 0; i < 200; ++i) {
                    sendError(std::to_string(i) + std::string(5000, 'a'));
                }
            },
            Reader::slow);
        std::string expected;
        for (int i = 0; i < 200; ++i) {
            expected += errorLineOf(std::to_string(i) + std::string(5000, 'a'));
        }
        EXPECT_EQ(0, outcome.status);
        EXPECT_TRUE(expected == outcome.output) << outcome.output.size() << " bytes of " << expected.size();
    }
}

} // namespace vadelclip
