#include "app/standard_descriptors.hpp"

#include "support/child_process_support.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace vadelclip {

// Each test runs in a new process, which reports its result through descriptor 3.

namespace {

void report(const std::string& text) {
    if (write(3, text.data(), text.size()) < 0) {
        std::abort();
    }
}

} // namespace

TEST(StandardDescriptors, opensClosedOnesOnTheNullDevice) {
    const ChildOutcome outcome = runWithPipe([] {
        close(0);
        close(1);
        close(2);
        guardStandardDescriptors();
        const int nullDevice = open("/dev/null", O_RDONLY);
        bool null = nullDevice > 3;
        for (int descriptor = 0; descriptor <= 2; ++descriptor) {
            char byte = 0;
            null = null && sameFile(nullDevice, descriptor) && write(descriptor, "x", 1) == 1 &&
                   read(descriptor, &byte, 1) == 0;
        }
        report(null ? "null device" : "another file");
    });
    EXPECT_EQ((ChildOutcome{0, "null device"}), outcome);
}

TEST(StandardDescriptors, keepsOpenOnes) {
    const ChildOutcome outcome = runWithPipe([] {
        dup2(3, 1);
        close(2);
        guardStandardDescriptors();
        report(sameFile(1, 3) && !sameFile(2, 3) ? "console" : "lost");
    });
    EXPECT_EQ((ChildOutcome{0, "console"}), outcome);
}

TEST(StandardDescriptors, continuesWithoutANullDevice) {
    const ChildOutcome outcome = runWithPipe([] {
        close(0);
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NOFILE, &none);
        guardStandardDescriptors();
        report(fcntl(0, F_GETFD) == -1 ? "closed" : "open");
    });
    EXPECT_EQ((ChildOutcome{0, "closed"}), outcome);
}

TEST(StandardDescriptors, writingWithoutAReaderIsAnError) {
    const ChildOutcome outcome = runWithPipe([] {
        int ends[2];
        if (pipe(ends) != 0) {
            std::abort();
        }
        close(ends[0]);
        guardStandardDescriptors();
        report(write(ends[1], "x", 1) == -1 && errno == EPIPE ? "error" : "written");
    });
    EXPECT_EQ((ChildOutcome{0, "error"}), outcome);
}

} // namespace vadelclip
