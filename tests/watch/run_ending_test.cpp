#include "watch/run_ending.hpp"

#include <gtest/gtest.h>

#include <csignal>

namespace {

std::string lineOf(ToolEnd end, int interruptedBy = 0) {
    RunRecord record;
    record.end = end;
    record.interruptedBy = interruptedBy;
    record.closingText = "failed.";
    return endingLine(record, "base/out", watchTexts("en"));
}

} // namespace

TEST(RunEnding, theToolsOwnStatusIsPassedOnAndAnyOtherIsAbnormal) {
    EXPECT_EQ(0, statusOf({0, 0}));
    EXPECT_EQ(1, statusOf({1, 0}));
    for (const ToolEnd end :
         {ToolEnd{2, 0}, ToolEnd{3, 0}, ToolEnd{127, 0}, ToolEnd{0, SIGKILL}, ToolEnd{0, SIGABRT}}) {
        EXPECT_EQ(4, statusOf(end)) << end.exitStatus << " " << end.signal;
    }
}

TEST(RunEnding, saysInOneLineWhatHappened) {
    EXPECT_EQ("failed.", lineOf({1, 0}));
    // It handled the signal in its own way.
    EXPECT_EQ("failed.", lineOf({1, 0}, SIGINT));
    EXPECT_EQ("Vadelwatch: interrupted by SIGTERM, Vadelclip has ended. The output in base/out is not complete.",
              lineOf({0, SIGTERM}, SIGTERM));
    EXPECT_EQ("Vadelwatch: Vadelclip was ended by signal 11 (SIGSEGV). The output in base/out is not complete.",
              lineOf({0, SIGSEGV}));
    EXPECT_EQ("Vadelwatch: Vadelclip ended abnormally, with exit status 134. The output in base/out is not complete.",
              lineOf({134, 0}));
}
