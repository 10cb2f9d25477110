#include "watch/map/axes.hpp"

#include "support/german_messages.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vadelwatch {

namespace {

std::vector<std::string> labelsBetween(double first, double last, TickStep step) {
    std::vector<std::string> labels;
    for (const MapTick& tick : ticksBetween(first, last, step)) {
        labels.push_back(tick.label);
    }
    return labels;
}

using Labels = std::vector<std::string>;

} // namespace

TEST(MapAxes, stepIsNextRoundNumber) {
    EXPECT_EQ(1.0, valueOf(stepAtLeast(1.0)));
    EXPECT_EQ(2.0, valueOf(stepAtLeast(1.0000001)));
    EXPECT_EQ(5.0, valueOf(stepAtLeast(2.5)));
    EXPECT_EQ(10.0, valueOf(stepAtLeast(7.0)));
    EXPECT_EQ(0.1, valueOf(stepAtLeast(0.07)));
    EXPECT_EQ(0.02, valueOf(stepAtLeast(0.011)));
    EXPECT_EQ(5e299, valueOf(stepAtLeast(2.1e299)));
    EXPECT_DOUBLE_EQ(1e-290, valueOf(stepAtLeast(6e-291)));
    EXPECT_EQ(0.1, valueOf(stepAtLeast(0.0)));
    EXPECT_EQ(5.0, valueOf(stepAtMost(9.99)));
    EXPECT_EQ(10.0, valueOf(stepAtMost(10.0)));
    EXPECT_EQ(0.2, valueOf(stepAtMost(0.3)));
    EXPECT_EQ(5e299, valueOf(stepAtMost(9e299)));
}

TEST(MapAxes, stepsFollowEachOtherUpAndDown) {
    TickStep step{1, -1};
    std::vector<double> upwards;
    for (int i = 0; i < 5; ++i) {
        upwards.push_back(valueOf(step));
        step = stepAbove(step);
    }
    EXPECT_EQ((std::vector<double>{0.1, 0.2, 0.5, 1.0, 2.0}), upwards);
    std::vector<double> downwards;
    for (int i = 0; i < 5; ++i) {
        step = stepBelow(step);
        downwards.push_back(valueOf(step));
    }
    EXPECT_EQ((std::vector<double>{2.0, 1.0, 0.5, 0.2, 0.1}), downwards);
}

TEST(MapAxes, labelsMetricCoordinates) {
    EXPECT_EQ((Labels{"382 250", "382 300", "382 350"}), labelsBetween(382211.4, 382399.9, {5, 1}));
    EXPECT_EQ((Labels{"6 354 400.0", "6 354 400.2", "6 354 400.4"}), labelsBetween(6354399.95, 6354400.45, {2, -1}));
}

TEST(MapAxes, labelsDegrees) {
    EXPECT_EQ((Labels{"-150", "-100", "-50", "0", "50", "100", "150"}), labelsBetween(-180, 180, {5, 1}));
    EXPECT_EQ((Labels{"-0.4", "-0.2", "0", "0.2"}), labelsBetween(-0.5, 0.39, {2, -1}));
}

TEST(MapAxes, includesBothEnds) {
    EXPECT_EQ((Labels{"10", "20", "30"}), labelsBetween(10, 30, {1, 1}));
    EXPECT_EQ(Labels{}, labelsBetween(10.5, 19.5, {1, 1}));
}

TEST(MapAxes, tickValueIsNearestDoubleOfLabel) {
    for (const MapTick& tick : ticksBetween(-3.0, 3.0, {1, -1})) {
        EXPECT_EQ(std::stod(tick.label), tick.value) << tick.label;
    }
}

TEST(MapAxes, longNumbersShareOnePowerOfTen) {
    EXPECT_EQ((Labels{"0", "0.5e+300", "1.0e+300"}), labelsBetween(-1.0, 1e300, {5, 299}));
    EXPECT_EQ((Labels{"-1.0e+300", "-0.5e+300", "0", "0.5e+300"}), labelsBetween(-1e300, 5e299, {5, 299}));
    EXPECT_EQ((Labels{"-2e-281", "0", "2e-281"}), labelsBetween(-3e-281, 3e-281, {2, -281}));
    EXPECT_EQ((Labels{"-0.5e-20", "0", "0.5e-20", "1.0e-20"}), labelsBetween(-6e-21, 1.2e-20, {5, -21}));
    EXPECT_EQ((Labels{"1.000000001e+12", "1.000000002e+12"}), labelsBetween(1.0000000005e12, 1.0000000025e12, {1, 3}));
    EXPECT_EQ((Labels{"0.999999999e+12", "1.000000000e+12"}), labelsBetween(9.999999985e11, 1.0000000005e12, {1, 3}));
    EXPECT_EQ((Labels{"500 000 000 000"}), labelsBetween(4e11, 6e11, {5, 11}));
}

TEST(MapAxes, omitsPowerOfTenThatSavesNoDigit) {
    EXPECT_EQ((Labels{"1.0000000000004", "1.0000000000006"}),
              labelsBetween(1.0000000000003, 1.0000000000007, {2, -13}));
    EXPECT_EQ((Labels{"-1.0000000000002", "-1.0000000000000"}),
              labelsBetween(-1.0000000000003, -0.9999999999999, {2, -13}));
    EXPECT_EQ((Labels{"382 250.0000002", "382 250.0000004"}), labelsBetween(382250.00000015, 382250.00000045, {2, -7}));
}

TEST(MapAxes, labelsLengths) {
    EXPECT_EQ("200", formatLength({2, 2}));
    EXPECT_EQ("0.05", formatLength({5, -2}));
    EXPECT_EQ("1e+15", formatLength({1, 15}));
}

TEST(MapAxes, usesDecimalSignOfLanguage) {
    const GermanMessages german;
    EXPECT_EQ((Labels{"-0,4", "-0,2", "0", "0,2"}), labelsBetween(-0.5, 0.39, {2, -1}));
    EXPECT_EQ(Labels{"6 354 400,2"}, labelsBetween(6354400.1, 6354400.3, {2, -1}));
    EXPECT_EQ(Labels{"1,000000001e+12"}, labelsBetween(1.0000000005e12, 1.0000000015e12, {1, 3}));
    EXPECT_EQ("0,05", formatLength({5, -2}));
}

} // namespace vadelwatch
