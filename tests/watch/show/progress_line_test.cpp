#include "watch/show/progress_line.hpp"
#include "watch/show/shown_name.hpp"

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

TEST(ProgressBarLine, atUsualWidths) {
    const ProgressFigures figures{45.39, 1234567.8, 12.9, 75.0};
    EXPECT_EQ(" ====------  45.3 %  0:12  1:15 left", progressBarLine(figures, 36, {}));
    EXPECT_EQ(" =========-----------  45.3 %  1 234 567 lines/s   0:12 elapsed   1:15 left",
              progressBarLine(figures, 75, {}));
    const GermanMessages german;
    EXPECT_EQ(" ====------  45,3 %  1 234 567 Zeilen/s   0:12  1:15 übrig", progressBarLine(figures, 58, {}));
}

TEST(ProgressBarLine, unknownFiguresAreDashes) {
    EXPECT_EQ(" --------------------   0.0 %          - lines/s   0:03 elapsed   -:-- left",
              progressBarLine({0.0, std::nullopt, 3.0, std::nullopt}, 75, {}));
}

TEST(ProgressBarLine, inUnicodeAndInColour) {
    const ProgressFigures figures{50.0, std::nullopt, 0.0, std::nullopt};
    EXPECT_EQ(" ━━━━━─────  50.0 %", progressBarLine(figures, 19, {BarLetters::drawn, false}));
    EXPECT_EQ(" \033[32m=====\033[0;2m-----\033[0m  50.0 %", progressBarLine(figures, 19, {BarLetters::plain, true}));
}

TEST(ProgressBarLine, isNeverWiderThanItsColumns) {
    expectFittingLines();
    const GermanMessages german;
    expectFittingLines();
}

TEST(ProgressBarLine, aHundredIsTheEndAndNothingElse) {
    const auto start = [](double percent) {
        return progressBarLine({percent, std::nullopt, 0.0, std::nullopt}, 19, {});
    };
    EXPECT_EQ(" =========-  99.9 %", start(99.99));
    EXPECT_EQ(" ========== 100.0 %", start(100.0));
}

TEST(PlainProgressLine, saysTheSameInWords) {
    EXPECT_EQ(" 10 %  1 234 567 lines/s  0:12 elapsed  1:15 left", plainProgressLine({10.0, 1234567.8, 12.0, 75.0}));
    const GermanMessages german;
    EXPECT_EQ("100 %  - Zeilen/s  0:12 vergangen  -:-- übrig",
              plainProgressLine({100.0, std::nullopt, 12.0, std::nullopt}));
}

TEST(ClockText, minutesHoursAndNonsense) {
    EXPECT_EQ("0:00", clockText(0.99));
    EXPECT_EQ("0:59", clockText(59.99));
    EXPECT_EQ("59:59", clockText(3599.9));
    EXPECT_EQ("1:00:00", clockText(3600.0));
    EXPECT_EQ("100:01:05", clockText(360065.0));
    EXPECT_EQ("0:00", clockText(-1.0));
}

} // namespace vadelwatch
