#include "watch/show/messages.hpp"
#include "watch/show/progress_line.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vadelwatch {

namespace {

void expectFittingLines() {
    for (const double percent : {0.0, 0.05, 9.99, 99.99, 100.0}) {
        for (const double rate : {0.0, 1e6, 1e15}) {
            for (int columns = 0; columns < 240; ++columns) {
                const ProgressFigures figures{percent, rate, 1e7, 1e9};
                EXPECT_LE(columnsOf(progressBarLine(figures, columns, {BarLetters::drawn, false})),
                          static_cast<std::size_t>(columns));
            }
        }
    }
}

} // namespace

TEST(ProgressBarLine, leavesOutWordsInNarrowWindow) {
    const ProgressFigures figures{45.39, 1234567.8, 12.9, 75.0};
    EXPECT_EQ(" ====------  45.3 %  0:12  1:15 left", progressBarLine(figures, 36, {}));
    EXPECT_EQ(" =========-----------  45.3 %  1 234 567 lines/s   0:12 elapsed   1:15 left",
              progressBarLine(figures, 75, {}));
    const GermanMessages german;
    EXPECT_EQ(" ====------  45,3 %  1 234 567 Zeilen/s   0:12  1:15 übrig", progressBarLine(figures, 58, {}));
}

TEST(ProgressBarLine, showsUnknownFiguresAsDashes) {
    EXPECT_EQ(" --------------------   0.0 %          - lines/s   0:03 elapsed   -:-- left",
              progressBarLine({0.0, std::nullopt, 3.0, std::nullopt}, 75, {}));
}

TEST(ProgressBarLine, drawsUnicodeAndColour) {
    const ProgressFigures figures{50.0, std::nullopt, 0.0, std::nullopt};
    EXPECT_EQ(" ━━━━━─────  50.0 %", progressBarLine(figures, 19, {BarLetters::drawn, false}));
    EXPECT_EQ(" \033[32m=====\033[0;2m-----\033[0m  50.0 %", progressBarLine(figures, 19, {BarLetters::plain, true}));
}

TEST(ProgressBarLine, isNeverWiderThanItsColumns) {
    expectFittingLines();
    const GermanMessages german;
    expectFittingLines();
}

TEST(ProgressBarLine, roundsPercentDown) {
    const auto start = [](double percent) {
        return progressBarLine({percent, std::nullopt, 0.0, std::nullopt}, 19, {});
    };
    EXPECT_EQ(" =========-  99.9 %", start(99.99));
    EXPECT_EQ(" ========== 100.0 %", start(100.0));
}

TEST(PlainProgressLine, hasEveryFigure) {
    EXPECT_EQ(" 10 %  1 234 567 lines/s  0:12 elapsed  1:15 left", plainProgressLine({10.0, 1234567.8, 12.0, 75.0}));
    const GermanMessages german;
    EXPECT_EQ("100 %  - Zeilen/s  0:12 vergangen  -:-- übrig",
              plainProgressLine({100.0, std::nullopt, 12.0, std::nullopt}));
}

TEST(ClockText, showsMinutesAndHours) {
    EXPECT_EQ("0:00", clockText(0.99));
    EXPECT_EQ("0:59", clockText(59.99));
    EXPECT_EQ("59:59", clockText(3599.9));
    EXPECT_EQ("1:00:00", clockText(3600.0));
    EXPECT_EQ("100:01:05", clockText(360065.0));
    EXPECT_EQ("0:00", clockText(-1.0));
}

TEST(ProgressMeasure, knowsNothingBeforeFirstReport) {
    const ProgressFigures figures = ProgressMeasure().figures(12.5, 1000);
    EXPECT_EQ(0.0, figures.percent);
    EXPECT_EQ(12.5, figures.elapsedSeconds);
    EXPECT_FALSE(figures.linesPerSecond || figures.remainingSeconds);
}

TEST(ProgressMeasure, measuresFromFirstReports) {
    ProgressMeasure measure;
    measure.report(0.1);
    measure.report(20.0);
    measure.endOfReports(3.0);
    EXPECT_FALSE(measure.figures(4.0, 1000).linesPerSecond);
    measure.report(25.0);
    measure.endOfReports(5.0);
    // Five percent took two seconds, and seventy-five are left.
    const ProgressFigures figures = measure.figures(5.0, 1000);
    EXPECT_EQ(25.0, figures.percent);
    EXPECT_DOUBLE_EQ(25.0, figures.linesPerSecond.value());
    EXPECT_DOUBLE_EQ(30.0, figures.remainingSeconds.value());
    // Without a new report the speed decreases.
    EXPECT_DOUBLE_EQ(12.5, measure.figures(7.0, 1000).linesPerSecond.value());
}

TEST(ProgressMeasure, measuresAtLeastTenthOfSecond) {
    ProgressMeasure measure;
    measure.report(1.0);
    measure.endOfReports(1.0);
    measure.report(50.0);
    const ProgressFigures early = measure.figures(1.09, 1000);
    EXPECT_FALSE(early.linesPerSecond || early.remainingSeconds);
    const ProgressFigures later = measure.figures(1.11, 1000);
    EXPECT_TRUE(later.linesPerSecond && later.remainingSeconds);
}

TEST(ProgressMeasure, timeLeftNeedsNoLineCount) {
    ProgressMeasure measure;
    measure.report(10.0);
    measure.endOfReports(1.0);
    measure.report(55.0);
    const ProgressFigures figures = measure.figures(2.0, std::nullopt);
    EXPECT_FALSE(figures.linesPerSecond);
    EXPECT_DOUBLE_EQ(1.0, figures.remainingSeconds.value());
}

TEST(ProgressMeasure, noTimeIsLeftAtEnd) {
    ProgressMeasure measure;
    measure.report(100.0);
    EXPECT_EQ(0.0, measure.figures(0.01, 1000).remainingSeconds);
    measure.endOfReports(0.01);
    EXPECT_EQ(0.0, measure.figures(5.0, 1000).remainingSeconds);
    EXPECT_FALSE(measure.figures(5.0, 1000).linesPerSecond);
}

} // namespace vadelwatch
