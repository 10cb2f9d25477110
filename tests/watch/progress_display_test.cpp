#include "watch/progress_display.hpp"

#include <gtest/gtest.h>

#include <string>

namespace {

const WatchTexts& english = watchTexts("en");

/// A display whose output is kept.
class RecordedDisplay {
public:
    explicit RecordedDisplay(ProgressMode mode)
        : display(
              mode, {}, english, [this](std::string_view text) { shown += text; }, [this] { return columns; }) {}

    /// What has been shown since the last call.
    std::string take() {
        display.flush();
        std::string text;
        text.swap(shown);
        return text;
    }

    std::string shown;
    int columns = 20;
    ProgressDisplay display;
};

ProgressFigures at(double percent) {
    return {percent, std::nullopt, 0.0, std::nullopt};
}

std::string drawing(const std::string& line) {
    return "\r\033[?7l" + line + "\033[K\r\033[?7h";
}

const std::string tenPercent = drawing(" =---------  10.0 %");
const std::string twentyPercent = drawing(" ==--------  20.0 %");

} // namespace

TEST(ProgressDisplay, drawsAtMostTenTimesASecond) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    EXPECT_EQ(tenPercent, recorded.take());
    recorded.display.update(at(20.0), 1.09);
    EXPECT_EQ("", recorded.take());
    recorded.display.update(at(20.0), 1.11);
    EXPECT_EQ(twentyPercent, recorded.take());
}

TEST(ProgressDisplay, drawsNothingAnewThatLooksTheSame) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.update(at(10.01), 2.0);
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, aLineTakesThePlaceOfTheBar) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.showLine("before");
    EXPECT_EQ("before\n", recorded.take());
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.showLine("first");
    recorded.display.showLine("second");
    EXPECT_EQ("\r\033[Kfirst\nsecond\n", recorded.take());
    recorded.display.update(at(10.0), 1.2);
    EXPECT_EQ(tenPercent, recorded.take());
}

TEST(ProgressDisplay, theBarGoesAndLeavesNothing) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.display.clear();
    EXPECT_EQ("\r\033[K", recorded.take());
    recorded.display.clear();
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, aNarrowerWindowHasItsBrokenRowsErased) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.columns = 9;
    recorded.display.update(at(10.0), 1.2);
    // Twenty columns take three rows of nine.
    EXPECT_EQ("\r\033[K\0337\033[B\033[2K\033[B\033[2K\0338" + drawing(" 10.0 %"), recorded.take());
    recorded.columns = 20;
    recorded.display.update(at(10.0), 1.4);
    EXPECT_EQ("\r\033[K" + tenPercent, recorded.take());
}

TEST(ProgressDisplay, drawsNothingWhereThereIsNoRoomOrAnotherProgramIsInFront) {
    RecordedDisplay recorded(ProgressMode::bar);
    recorded.display.update(at(10.0), 1.0);
    recorded.take();
    recorded.columns = 0;
    recorded.display.update(at(20.0), 1.2);
    EXPECT_EQ("\r\033[K", recorded.take());
    recorded.display.update(at(30.0), 1.4);
    EXPECT_EQ("", recorded.take());
}

TEST(ProgressDisplay, aPlainLineEveryTenPercentAndNoneTwice) {
    RecordedDisplay recorded(ProgressMode::plain);
    std::string expected;
    for (int tenths = 0; tenths <= 1000; ++tenths) {
        recorded.display.update(at(tenths / 10.0), 0.0);
        recorded.display.update(at(tenths / 10.0), 0.0);
    }
    for (int tens = 10; tens <= 100; tens += 10) {
        expected += plainProgressLine(at(tens), english) + "\n";
    }
    EXPECT_EQ(expected, recorded.take());
}

TEST(ProgressDisplay, aJumpOverSeveralTensIsOneLine) {
    RecordedDisplay recorded(ProgressMode::plain);
    recorded.display.update(at(45.0), 0.0);
    EXPECT_EQ(" 40 %  - lines/s  0:00 elapsed  -:-- left\n", recorded.take());
}

TEST(ProgressDisplay, withoutProgressOnlyLinesAreShown) {
    RecordedDisplay recorded(ProgressMode::none);
    recorded.display.update(at(50.0), 1.0);
    recorded.display.showLine("error");
    recorded.display.update(at(100.0), 2.0);
    recorded.display.clear();
    EXPECT_EQ("error\n", recorded.take());
}
