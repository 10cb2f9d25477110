#include "watch/exit_status.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace vadelwatch {

namespace {

using Lines = std::vector<std::string>;

Lines endingOf(ToolEnd end, int interruptedBy = 0) {
    RunRecord record;
    record.end = end;
    record.interruptedBy = interruptedBy;
    record.closingText = "last words";
    return endingLines(record, "base/out");
}

} // namespace

TEST(ExitStatus, otherEndsOfToolAreAbnormal) {
    EXPECT_EQ(0, statusOf({0, 0}));
    EXPECT_EQ(1, statusOf({1, 0}));
    for (const ToolEnd end :
         {ToolEnd{2, 0}, ToolEnd{3, 0}, ToolEnd{127, 0}, ToolEnd{0, SIGKILL}, ToolEnd{0, SIGABRT}}) {
        EXPECT_EQ(4, statusOf(end)) << end.exitStatus << " " << end.signal;
    }
}

TEST(EndingLines, describeAbnormalEnds) {
    EXPECT_EQ(Lines{}, endingOf({0, 0}));
    EXPECT_EQ(Lines{"last words"}, endingOf({1, 0}));
    EXPECT_EQ(Lines{"Vadelwatch: Vadelclip was ended by signal 11 (SIGSEGV). The output in base/out is not complete."},
              endingOf({0, SIGSEGV}));
    EXPECT_EQ(
        Lines{"Vadelwatch: Vadelclip ended abnormally, with exit status 134. The output in base/out is not complete."},
        endingOf({134, 0}));
}

TEST(EndingLines, nameTheSignalForEveryEnd) {
    EXPECT_EQ(Lines{"Vadelwatch: interrupted by SIGTERM, Vadelclip has ended. The output in base/out is not complete."},
              endingOf({0, SIGTERM}, SIGTERM));
    EXPECT_EQ(Lines{"Vadelwatch: interrupted by SIGTERM, but Vadelclip finished."}, endingOf({0, 0}, SIGTERM));
    EXPECT_EQ((Lines{"last words", "Vadelwatch: interrupted by SIGINT, Vadelclip has ended with exit status 1. "
                                   "The output in base/out is not complete."}),
              endingOf({1, 0}, SIGINT));
    EXPECT_EQ(Lines{"Vadelwatch: interrupted by SIGINT, Vadelclip has ended with exit status 130. "
                    "The output in base/out is not complete."},
              endingOf({130, 0}, SIGINT));
}

TEST(EndingLines, areNoneWithoutClosingMessage) {
    RunRecord record;
    record.end = {1, 0};
    EXPECT_EQ(Lines{}, endingLines(record, "base/out"));
}

} // namespace vadelwatch
