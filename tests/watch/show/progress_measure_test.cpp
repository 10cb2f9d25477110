#include "watch/show/progress_measure.hpp"

#include <gtest/gtest.h>

namespace vadelwatch {

TEST(ProgressMeasure, beforeTheFirstReportNothingIsKnown) {
    const ProgressFigures figures = ProgressMeasure().figures(12.5, 1000);
    EXPECT_EQ(0.0, figures.percent);
    EXPECT_EQ(12.5, figures.elapsedSeconds);
    EXPECT_FALSE(figures.linesPerSecond || figures.remainingSeconds);
}

TEST(ProgressMeasure, theFirstReportsAreWhereItIsMeasuredFrom) {
    ProgressMeasure measure;
    measure.report(0.1);
    measure.report(20.0);
    measure.endOfReports(3.0);
    EXPECT_FALSE(measure.figures(4.0, 1000).linesPerSecond);
    measure.report(25.0);
    measure.endOfReports(5.0);
    // Five percent in two seconds, seventy-five are left.
    const ProgressFigures figures = measure.figures(5.0, 1000);
    EXPECT_EQ(25.0, figures.percent);
    EXPECT_DOUBLE_EQ(25.0, figures.linesPerSecond.value());
    EXPECT_DOUBLE_EQ(30.0, figures.remainingSeconds.value());
    // Later without a new report, it is slower than it seemed.
    EXPECT_DOUBLE_EQ(12.5, measure.figures(7.0, 1000).linesPerSecond.value());
}

TEST(ProgressMeasure, aTenthOfASecondIsTheLeastToMeasureBy) {
    ProgressMeasure measure;
    measure.report(1.0);
    measure.endOfReports(1.0);
    measure.report(50.0);
    const ProgressFigures early = measure.figures(1.09, 1000);
    EXPECT_FALSE(early.linesPerSecond || early.remainingSeconds);
    const ProgressFigures later = measure.figures(1.11, 1000);
    EXPECT_TRUE(later.linesPerSecond && later.remainingSeconds);
}

TEST(ProgressMeasure, withoutACountOfTheLinesTheTimeIsKnown) {
    ProgressMeasure measure;
    measure.report(10.0);
    measure.endOfReports(1.0);
    measure.report(55.0);
    const ProgressFigures figures = measure.figures(2.0, std::nullopt);
    EXPECT_FALSE(figures.linesPerSecond);
    EXPECT_DOUBLE_EQ(1.0, figures.remainingSeconds.value());
}

TEST(ProgressMeasure, atTheEndNothingIsLeftHoweverShortTheRun) {
    ProgressMeasure measure;
    measure.report(100.0);
    EXPECT_EQ(0.0, measure.figures(0.01, 1000).remainingSeconds);
    measure.endOfReports(0.01);
    EXPECT_EQ(0.0, measure.figures(5.0, 1000).remainingSeconds);
    EXPECT_FALSE(measure.figures(5.0, 1000).linesPerSecond);
}

} // namespace vadelwatch
