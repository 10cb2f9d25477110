#include <ProcessMessage.h>

#include "support/child_process_support.hpp"
#include "support/sending.hpp"
#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace vadelclip {

// Which steps of a run lead to progress lines.

TEST(ProcessMessageProgress, writesProgressIfItsDecimalGrows) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        walkRange(0.0, 50.0, 3, 3);
        mark("next file");
        walkRange(50.0, 100.0, 2000, 4);
        walkClosingRange();
    });
    EXPECT_EQ((ChildOutcome{0, percentLine("0.0") + percentLine("16.6") + percentLine("33.3") + "-- next file\n" +
                                   percentLine("50.0") + percentLine("100.0")}),
              outcome);
}

TEST(ProcessMessageProgress, writesAThousandLinesForTenMillionSteps) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        walkRange(0.0, 40.0, 4000000, 4000000);
        walkRange(40.0, 100.0, 6000000, 6000000);
        walkClosingRange();
    });
    std::string expected;
    for (int tenths = 0; tenths <= 1000; ++tenths) {
        expected += percentLine(std::to_string(tenths / 10) + "." + std::to_string(tenths % 10));
    }
    EXPECT_EQ((ChildOutcome{0, expected}), outcome);
}

TEST(ProcessMessageProgress, progressNeverDecreases) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        walkRange(0.0, 80.0, 4, 4);
        // Such ranges follow a file with a negative line count, or occur after totals have wrapped around.
        walkRange(20.0, 40.0, 4, 4);
        walkRange(80.0, 60.0, 4, 4);
        walkRange(50.0, 100.0, 4, 4);
        ProgressMessage progress(0.0, 100.0, 100);
        for (const int step : {90, 10, 95, 0, 95, 99}) {
            progress.OnProgress(step, false);
        }
        walkClosingRange();
    });
    EXPECT_EQ(
        (ChildOutcome{0, percentLine("0.0") + percentLine("20.0") + percentLine("40.0") + percentLine("60.0") +
                             percentLine("62.5") + percentLine("75.0") + percentLine("87.5") + percentLine("90.0") +
                             percentLine("95.0") + percentLine("99.0") + percentLine("100.0")}),
        outcome);
}

TEST(ProcessMessageProgress, writesNothingForEmptyOrInfiniteRanges) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        walkRange(notANumber, notANumber, 0, 5);
        walkRange(notANumber, infinity, 5, 5);
        walkRange(-infinity, infinity, 5, 5);
        walkRange(0.0, infinity, 5, 5);
        walkRange(0.0, -50.0, -1, 5);
        walkRange(50.0, 50.0, 5, 5);
        walkRange(0.0, 100.0, 0, 5);
        ProgressMessage(0.0, 100.0, std::numeric_limits<int>::min()).OnProgress(std::numeric_limits<int>::max(), false);
        walkClosingRange();
    });
    EXPECT_EQ((ChildOutcome{0, percentLine("100.0")}), outcome);
}

TEST(ProcessMessageProgress, alwaysWritesTheEndOfTheRun) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        // A range whose end was rounded up reaches 100 before the closing range.
        walkRange(99.0, 100.00000000000001, 1, 2);
        walkClosingRange();
    });
    EXPECT_EQ((ChildOutcome{0, percentLine("99.0") + percentLine("100.0") + percentLine("100.0")}), outcome);
}

TEST(ProcessMessageProgress, ignoresTheFlagsOfSteps) {
    const ChildOutcome outcome = runWithPipe([] {
        MessageSender::Instance(true);
        ProgressMessage progress(0.0, 100.0, 4);
        progress.OnProgress(1, true);
        progress.OnProgress(2, false);
    });
    EXPECT_EQ((ChildOutcome{0, percentLine("25.0") + percentLine("50.0")}), outcome);
}

} // namespace vadelclip
