#include "watch/show/messages.hpp"
#include "watch/show/progress_line.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace vadelwatch {

namespace {

/// Every figure of a run in the middle.
ProgressFigures clipping() {
    ProgressFigures figures;
    figures.phase = translateMessage("clipping");
    figures.percent = 45.39;
    figures.elapsedSeconds = 12.9;
    figures.linesPerSecond = 1234567.8;
    figures.bytesPerSecond = 22.14e6;
    figures.remainingSeconds = 74.2;
    figures.file = 7;
    figures.files = 60;
    figures.fileName = "höhe.xyz";
    return figures;
}

/// Of a run over 2000 bytes.
ProgressFigures figuresOf(const ProgressMeasure& measure, double seconds, std::optional<std::uint64_t> nodeLines) {
    ProgressFigures figures;
    measure.addTo(figures, seconds, nodeLines, 2000);
    return figures;
}

ProgressFigures atPercent(double percent) {
    ProgressFigures figures;
    figures.percent = percent;
    return figures;
}

void expectFittingLines() {
    for (const double percent : {0.0, 0.05, 9.99, 99.99, 100.0}) {
        for (const double rate : {0.0, 1e6, 1e15}) {
            for (int columns = 0; columns < 240; ++columns) {
                ProgressFigures figures = clipping();
                figures.percent = percent;
                figures.linesPerSecond = rate;
                EXPECT_LE(columnsOf(progressBarLine(figures, columns, {BarLetters::drawn, false})),
                          static_cast<std::size_t>(columns));
            }
        }
    }
}

} // namespace

TEST(ProgressBarLine, leavesOutFiguresInNarrowWindow) {
    EXPECT_EQ(" 45.3 %   7/60", progressBarLine(clipping(), 16, {}));
    EXPECT_EQ("clipping   45.3 %   7/60", progressBarLine(clipping(), 27, {}));
    EXPECT_EQ("clipping   45.3 %   1:15 left   7/60", progressBarLine(clipping(), 39, {}));
    EXPECT_EQ("clipping   45.3 %  1.23M lines/s   1:15 left   7/60", progressBarLine(clipping(), 59, {}));
    EXPECT_EQ("clipping   45.3 %  1.23M lines/s   1:15 left  file  7/60", progressBarLine(clipping(), 60, {}));
    EXPECT_EQ("clipping  ====------   45.3 %  1.23M lines/s  22.1 MB/s   1:15 left  file  7/60",
              progressBarLine(clipping(), 79, {}));
    EXPECT_EQ("clipping  =========-----------   45.3 %  1.23M lines/s  22.1 MB/s   0:12 elapsed   1:15 left  file  "
              "7/60  höhe.xyz",
              progressBarLine(clipping(), 132, {}));
    const GermanMessages german;
    EXPECT_EQ("Zuschnitt   45,3 %   1:15 übrig   7/60", progressBarLine(clipping(), 39, {}));
    EXPECT_EQ("Zuschnitt  =======----------   45,3 %  1,23M Zeilen/s   1:15 übrig  Datei  7/60",
              progressBarLine(clipping(), 79, {}));
}

TEST(ProgressBarLine, shortensNameInTheMiddle) {
    ProgressFigures figures = clipping();
    figures.fileName = "dgm1_" + std::string(29, 'x') + "_ä.xyz";
    const auto name = [&figures](int columns, BarLetters letters) {
        const std::string line = progressBarLine(figures, columns, {letters, false});
        return line.substr(line.find("7/60  ") + 6);
    };
    EXPECT_EQ("dgm1_xxxx…xx_ä.xyz", name(97, BarLetters::drawn));
    EXPECT_EQ("dgm1_xxx..xx_ä.xyz", name(97, BarLetters::plain));
    EXPECT_EQ(figures.fileName, name(240, BarLetters::drawn));
    figures.fileName = "a\x1B[2J";
    EXPECT_EQ("a\\x1B[2J", name(97, BarLetters::drawn));
}

TEST(ProgressBarLine, keepsItsPlacesWithoutName) {
    ProgressFigures figures = clipping();
    const std::string named = progressBarLine(figures, 97, {});
    figures.fileName.clear();
    EXPECT_EQ(named, progressBarLine(figures, 97, {}) + "  höhe.xyz");
}

TEST(ProgressBarLine, showsThreeDigitsOfSpeed) {
    ProgressFigures figures;
    for (const auto& [speed, text] : {std::pair(0.0, "    0"),
                                      {999.4, "  999"},
                                      {999.6, "1.00k"},
                                      {9994.0, "9.99k"},
                                      {9996.0, "10.0k"},
                                      {99960.0, " 100k"},
                                      {12345678.0, "12.3M"},
                                      {1.5e12, "1.50T"}}) {
        figures.linesPerSecond = speed;
        EXPECT_EQ(std::string(text) + " lines/s", progressBarLine(figures, 13, {}));
    }
}

TEST(ProgressBarLine, showsUnknownFiguresAsDashes) {
    ProgressFigures figures;
    figures.phase = "clipping";
    figures.percent = 0.0;
    figures.file = 1;
    EXPECT_EQ("clipping  --------    0.0 %      - lines/s     - MB/s   -:-- left  file 1",
              progressBarLine(figures, 73, {}));
}

TEST(ProgressBarLine, showsPhaseWithoutPercentage) {
    ProgressFigures figures;
    figures.phase = "drawing";
    figures.elapsedSeconds = 7.0;
    EXPECT_EQ("drawing   0:07 elapsed", progressBarLine(figures, 79, {}));
    EXPECT_EQ("drawing", progressBarLine(figures, 20, {}));
}

TEST(ProgressBarLine, showsStandstillInPlaceOfSpeed) {
    ProgressFigures figures = atPercent(40.0);
    figures.phase = "clipping";
    figures.file = 1;
    figures.stalledSeconds = 12.9;
    EXPECT_EQ(" 40.0 %  no progress for 12 s", progressBarLine(figures, 34, {}));
    EXPECT_EQ("clipping   40.0 %  no progress for 12 s", progressBarLine(figures, 41, {}));
    const GermanMessages german;
    EXPECT_EQ("40,0 %  kein Fortschritt seit 12 s  0:00 vergangen  Datei 1",
              plainProgressLine(figures).substr(std::string("clipping  ").size()));
}

TEST(ProgressBarLine, drawsUnicodeAndColour) {
    EXPECT_EQ("━━━━━─────   50.0 %", progressBarLine(atPercent(50.0), 19, {BarLetters::drawn, false}));
    EXPECT_EQ("\033[32m=====\033[0;2m-----\033[0m   50.0 %",
              progressBarLine(atPercent(50.0), 19, {BarLetters::plain, true}));
}

TEST(ProgressBarLine, isNeverWiderThanItsColumns) {
    expectFittingLines();
    const GermanMessages german;
    expectFittingLines();
}

TEST(ProgressBarLine, roundsPercentDownAndTimeLeftUp) {
    EXPECT_EQ("=========-   99.9 %", progressBarLine(atPercent(99.99), 19, {}));
    EXPECT_EQ("==========  100.0 %", progressBarLine(atPercent(100.0), 19, {}));
    ProgressFigures figures = atPercent(99.0);
    for (const auto& [seconds, text] : {std::pair(0.0, "0:00 left"), {0.01, "0:01 left"}, {59.01, "1:00 left"}}) {
        figures.remainingSeconds = seconds;
        EXPECT_NE(std::string::npos, plainProgressLine(figures).find(text)) << seconds;
    }
}

TEST(PlainProgressLine, hasEveryFigure) {
    EXPECT_EQ("clipping  45.3 %  1.23M lines/s  22.1 MB/s  0:12 elapsed  1:15 left  file  7/60  höhe.xyz",
              plainProgressLine(clipping()));
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
    const ProgressFigures figures = figuresOf(ProgressMeasure(), 9.5, 1000);
    EXPECT_EQ(0.0, figures.percent);
    EXPECT_FALSE(figures.linesPerSecond || figures.bytesPerSecond || figures.remainingSeconds);
    EXPECT_EQ(0.0, figures.stalledSeconds);
}

TEST(ProgressMeasure, measuresFromFirstReports) {
    ProgressMeasure measure;
    measure.report(0.1);
    measure.report(20.0);
    measure.endOfReports(3.0);
    EXPECT_FALSE(figuresOf(measure, 4.0, 1000).linesPerSecond);
    measure.report(25.0);
    measure.endOfReports(5.0);
    // Five percent took two seconds, and seventy-five are left.
    const ProgressFigures figures = figuresOf(measure, 5.0, 1000);
    EXPECT_EQ(25.0, figures.percent);
    EXPECT_DOUBLE_EQ(25.0, figures.linesPerSecond.value());
    EXPECT_DOUBLE_EQ(50.0, figures.bytesPerSecond.value());
    EXPECT_DOUBLE_EQ(30.0, figures.remainingSeconds.value());
    // Without a new report the speed decreases.
    EXPECT_DOUBLE_EQ(12.5, figuresOf(measure, 7.0, 1000).linesPerSecond.value());
}

TEST(ProgressMeasure, forgetsSpeedOfEarlierSeconds) {
    ProgressMeasure measure;
    // Ten percent a second, then one.
    for (int second = 1; second <= 20; ++second) {
        measure.report(second <= 8 ? second * 10.0 : 80.0 + second - 8);
        measure.endOfReports(second);
    }
    EXPECT_DOUBLE_EQ(10.0, figuresOf(measure, 20.0, 1000).linesPerSecond.value());
    EXPECT_DOUBLE_EQ(8.0, figuresOf(measure, 20.0, 1000).remainingSeconds.value());
}

TEST(ProgressMeasure, rareReportsKeepTheirSpeed) {
    ProgressMeasure measure;
    for (int i = 1; i <= 10; ++i) {
        measure.report(i);
        measure.endOfReports(i * 20.0);
    }
    const ProgressFigures figures = figuresOf(measure, 219.0, 1000);
    EXPECT_EQ(0.0, figures.stalledSeconds);
    EXPECT_NEAR(0.5, figures.linesPerSecond.value(), 0.15);
}

TEST(ProgressMeasure, noticesStandstill) {
    ProgressMeasure measure;
    for (int second = 1; second <= 20; ++second) {
        measure.report(second);
        measure.endOfReports(second);
    }
    EXPECT_EQ(0.0, figuresOf(measure, 29.9, 1000).stalledSeconds);
    measure.report(20.0);
    measure.endOfReports(31.0);
    const ProgressFigures figures = figuresOf(measure, 32.0, 1000);
    EXPECT_DOUBLE_EQ(12.0, figures.stalledSeconds);
    EXPECT_FALSE(figures.linesPerSecond || figures.remainingSeconds);
    measure.report(100.0);
    EXPECT_EQ(0.0, figuresOf(measure, 60.0, 1000).stalledSeconds);
}

TEST(ProgressMeasure, measuresAtLeastTenthOfSecond) {
    ProgressMeasure measure;
    measure.report(1.0);
    measure.endOfReports(1.0);
    measure.report(50.0);
    const ProgressFigures early = figuresOf(measure, 1.09, 1000);
    EXPECT_FALSE(early.linesPerSecond || early.remainingSeconds);
    const ProgressFigures later = figuresOf(measure, 1.11, 1000);
    EXPECT_TRUE(later.linesPerSecond && later.remainingSeconds);
}

TEST(ProgressMeasure, timeLeftNeedsNoLineCount) {
    ProgressMeasure measure;
    measure.report(10.0);
    measure.endOfReports(1.0);
    measure.report(55.0);
    const ProgressFigures figures = figuresOf(measure, 2.0, std::nullopt);
    EXPECT_FALSE(figures.linesPerSecond);
    EXPECT_DOUBLE_EQ(1.0, figures.remainingSeconds.value());
}

TEST(ProgressMeasure, noTimeIsLeftAtEnd) {
    ProgressMeasure measure;
    measure.report(100.0);
    EXPECT_EQ(0.0, figuresOf(measure, 0.01, 1000).remainingSeconds);
    measure.endOfReports(0.01);
    EXPECT_EQ(0.0, figuresOf(measure, 5.0, 1000).remainingSeconds);
    EXPECT_FALSE(figuresOf(measure, 5.0, 1000).linesPerSecond);
}

} // namespace vadelwatch
