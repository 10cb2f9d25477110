#include "processmessage/progress_range.hpp"

#include "support/special_numbers.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace vadelclip {

namespace {

constexpr double largest = std::numeric_limits<double>::max();
constexpr int largestStep = std::numeric_limits<int>::max();

/// Returns the result of `firstDueStep`, computed by a scan over all steps.
int firstDueStepByScan(const ProgressRange& range, int writtenTenths) {
    for (int step = 0; step <= range.stepCount; ++step) {
        const int tenths = tenthsAt(range, step);
        if (tenths > writtenTenths || (step == range.stepCount && tenths == finishedTenths)) {
            return step;
        }
    }
    return noDueStep;
}

void expectAsByScan(const ProgressRange& range) {
    for (const int written : {-1, 0, 1, 3, 99, 100, 333, 499, 500, 998, 999, 1000}) {
        ASSERT_EQ(firstDueStepByScan(range, written), firstDueStep(range, written))
            << range.startPercent << " to " << range.endPercent << " in " << range.stepCount << ", written " << written;
    }
}

/// Returns the tenths that `OnProgress` writes while a range is walked, if `writtenTenths` was written last.
std::vector<int> walk(const ProgressRange& range, int writtenTenths, int lastStep) {
    std::vector<int> written;
    for (int step = 0; step <= lastStep; ++step) {
        if (step >= firstDueStep(range, writtenTenths)) {
            writtenTenths = tenthsAt(range, step);
            written.push_back(writtenTenths);
        }
    }
    return written;
}

} // namespace

TEST(ProgressRange, roundsTenthsDown) {
    const ProgressRange whole{0.0, 100.0, 3};
    EXPECT_EQ(0, tenthsAt(whole, 0));
    EXPECT_EQ(333, tenthsAt(whole, 1));
    EXPECT_EQ(666, tenthsAt(whole, 2));
    EXPECT_EQ(1000, tenthsAt(whole, 3));
    EXPECT_EQ(999, tenthsAt({0.0, 100.0, 1000000}, 999999));
    EXPECT_EQ(0, tenthsAt({0.0, 100.0, 1000000}, 999));
    EXPECT_EQ(1, tenthsAt({0.0, 100.0, 1000000}, 1000));
}

TEST(ProgressRange, eachOfAThousandStepsIsATenth) {
    for (int step = 0; step <= 1000; ++step) {
        EXPECT_EQ(step, tenthsAt({0.0, 100.0, 1000}, step));
    }
}

TEST(ProgressRange, mapsARangeToItsPartOfTheRun) {
    EXPECT_EQ(375, tenthsAt({37.5, 62.5, 2}, 0));
    EXPECT_EQ(500, tenthsAt({37.5, 62.5, 2}, 1));
    EXPECT_EQ(625, tenthsAt({37.5, 62.5, 2}, 2));
    EXPECT_EQ(10, tenthsAt({1.0, 100.0, 100}, 0));
    EXPECT_EQ(1000, tenthsAt({1.0, 100.0, 100}, 100));
}

TEST(ProgressRange, limitsTheResult) {
    EXPECT_EQ(1000, tenthsAt({0.0, 100.0, 4}, 5));
    EXPECT_EQ(1000, tenthsAt({0.0, 100.0, 4}, largestStep));
    EXPECT_EQ(1000, tenthsAt({150.0, 200.0, 4}, 0));
    EXPECT_EQ(1000, tenthsAt({0.0, largest, 2}, 1));
    EXPECT_EQ(noTenths, tenthsAt({-50.0, 100.0, 3}, 0));
    EXPECT_EQ(0, tenthsAt({-50.0, 100.0, 3}, 1));
    EXPECT_EQ(noTenths, tenthsAt({-1.0, -0.5, 3}, 3));
    EXPECT_EQ(noTenths, tenthsAt({0.0, 100.0, 4}, -1));
    EXPECT_EQ(noTenths, tenthsAt({-largest, 100.0, 4}, 1));
}

TEST(ProgressRange, emptyOrInfiniteRangeHasNoDueStep) {
    for (const ProgressRange range : {ProgressRange{0.0, 0.0, 10},
                                      {50.0, 50.0, 10},
                                      {100.0, 100.0, 10},
                                      {100.0, 0.0, 10},
                                      {0.0, -50.0, 10},
                                      {0.0, 100.0, 0},
                                      {0.0, 100.0, -1},
                                      {0.0, 100.0, -largestStep - 1},
                                      {50.0, 25.0, -1},
                                      {notANumber, notANumber, 0},
                                      {notANumber, notANumber, 10},
                                      {notANumber, infinity, 10},
                                      {notANumber, 100.0, 10},
                                      {0.0, notANumber, 10},
                                      {0.0, infinity, 10},
                                      {-infinity, 100.0, 10},
                                      {-infinity, infinity, 10},
                                      {infinity, infinity, 10},
                                      {infinity, notANumber, 10},
                                      {-largest, largest, 10}}) {
        for (const int step : {0, 1, 5, 10, 11, largestStep}) {
            EXPECT_EQ(noTenths, tenthsAt(range, step)) << range.startPercent << " to " << range.endPercent;
        }
        for (const int written : {noTenths, 0, 500, finishedTenths}) {
            EXPECT_EQ(noDueStep, firstDueStep(range, written)) << range.startPercent << " to " << range.endPercent;
        }
    }
}

TEST(ProgressRange, firstDueStepEqualsTheOneOfAScan) {
    for (int stepCount = 1; stepCount <= 60; ++stepCount) {
        for (const double start : {-10.0, 0.0, 0.05, 1.0, 33.3, 99.9, 100.0}) {
            for (const double end : {-5.0, 0.1, 0.15, 1.0, 33.4, 66.6, 99.99, 100.0, 100.00000000000001, 250.0}) {
                expectAsByScan({start, end, stepCount});
            }
        }
    }
    expectAsByScan({0.0, 100.0, 999});
    expectAsByScan({0.0, 100.0, 1000});
    expectAsByScan({0.0, 100.0, 1001});
    expectAsByScan({0.0, 100.0, 12345});
}

TEST(ProgressRange, firstDueStepEqualsTheOneOfAScanOnRandomRanges) {
    std::mt19937 random(20231);
    std::uniform_real_distribution<double> percent(-5.0, 105.0);
    std::uniform_int_distribution<int> steps(1, 400);
    for (int i = 0; i < 20000; ++i) {
        const ProgressRange range{percent(random), percent(random), steps(random)};
        const int written = std::uniform_int_distribution<int>(noTenths, finishedTenths)(random);
        ASSERT_EQ(firstDueStepByScan(range, written), firstDueStep(range, written))
            << range.startPercent << " to " << range.endPercent << " in " << range.stepCount << ", written " << written;
    }
}

TEST(ProgressRange, progressNeverDecreasesWithinARange) {
    std::mt19937 random(20232);
    std::uniform_real_distribution<double> percent(0.0, 100.0);
    for (int i = 0; i < 300; ++i) {
        const ProgressRange range{percent(random), percent(random),
                                  std::uniform_int_distribution<int>(1, 3000)(random)};
        int last = noTenths;
        for (int step = 0; step <= range.stepCount; ++step) {
            const int tenths = tenthsAt(range, step);
            ASSERT_LE(last, tenths) << range.startPercent << " to " << range.endPercent << " at " << step;
            last = tenths;
        }
    }
}

TEST(ProgressRange, findsDueStepsOfLargeRanges) {
    const ProgressRange range{0.0, 100.0, largestStep};
    EXPECT_EQ(0, firstDueStep(range, noTenths));
    // One tenth is 2147483.647 steps.
    EXPECT_EQ(2147484, firstDueStep(range, 0));
    EXPECT_EQ(2145336164, firstDueStep(range, 998));
    EXPECT_EQ(largestStep, firstDueStep(range, 999));
    EXPECT_EQ(1, firstDueStep({0.0, largest, largestStep}, 0));
}

TEST(ProgressRange, endOfTheRunIsAlwaysDue) {
    EXPECT_EQ(100, firstDueStep({1.0, 100.0, 100}, 999));
    EXPECT_EQ(100, firstDueStep({1.0, 100.0, 100}, finishedTenths));
    EXPECT_EQ(7, firstDueStep({50.0, 120.0, 7}, finishedTenths));
    EXPECT_EQ(noDueStep, firstDueStep({1.0, 99.9, 100}, 999));
    EXPECT_EQ(noDueStep, firstDueStep({1.0, 99.9, 100}, finishedTenths));
}

TEST(ProgressRange, writesEachTenthOnce) {
    EXPECT_EQ((std::vector<int>{0, 333, 666}), walk({0.0, 100.0, 3}, noTenths, 2));
    EXPECT_EQ((std::vector<int>{333, 666, 1000}), walk({0.0, 100.0, 3}, 0, 3));
    EXPECT_EQ((std::vector<int>{501, 502}), walk({50.0, 50.3, 6}, 500, 5));
    EXPECT_EQ(1000u, walk({0.0, 100.0, 100000}, noTenths, 99999).size());
}

} // namespace vadelclip
